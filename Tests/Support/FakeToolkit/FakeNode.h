#pragma once

#include "Host/Interface/UI/UI_Node.h"
#include "Tests/Support/FakeToolkit/CallLog.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace test {

/// The counting of `Interface`, a UI_Node, for a fake called `name`. Starts at 0, deletes itself.
template <class Interface>
class FakeNode : public Interface {
public:
    FakeNode(std::shared_ptr<CallLog> log, std::string name) : mLog(std::move(log)), mName(std::move(name)) {
        ++mLog->liveNodes;
    }
    ~FakeNode() override { --mLog->liveNodes; }
    FakeNode(const FakeNode&) = delete;
    FakeNode& operator=(const FakeNode&) = delete;

    std::int32_t AddRef() override {
        RecordReference("AddRef");
        if (mReferences > 0) {  // without its first reference nobody could let go of it
            static_cast<void>(mLog->AnswerTo("AddRef"));
        }
        return ++mReferences;
    }

    std::int32_t Release() override {
        RecordReference("Release");
        const std::int32_t references = --mReferences;
        if (references == 0) {
            delete this;
        }
        return references;
    }

    zelui::ui::UI_Node* GetUINodePtr(std::string_view /*name*/, bool /*recursive*/) override { return nullptr; }

    [[nodiscard]] const std::string& Name() const { return mName; }

protected:
    [[nodiscard]] CallLog& Log() { return *mLog; }
    [[nodiscard]] Answer AnswerTo(const char* operation) const { return mLog->AnswerTo(operation); }

private:
    void RecordReference(const char* operation) {
        if (mLog->recordReferences) {
            mLog->Add(mName, operation);
        }
    }

    std::shared_ptr<CallLog> mLog;
    std::string mName;
    std::int32_t mReferences = 0;
};

}  // namespace test
