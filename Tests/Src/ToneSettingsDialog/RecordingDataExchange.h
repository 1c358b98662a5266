#pragma once

#include "Src/ToneSettingsDialog/IToneSettingsDialogDataExchange.h"
#include "Tests/Support/FakeToolkit/CallLog.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>

namespace test {

/// A data exchange that records what is asked of it as "exchange" and never deletes itself.
class RecordingDataExchange : public IToneSettingsDialogDataExchange {
public:
    explicit RecordingDataExchange(std::shared_ptr<CallLog> log) : mLog(std::move(log)) {}

    BarsAndToneInfo info;
    bool cancelled = false;
    bool answers = true;                   ///< QueryMap stores a pointer
    Brio::Result result = Brio::kNoError;  ///< what QueryMap returns
    std::function<void()> onQueryMap;      ///< called first in QueryMap; may throw

    [[nodiscard]] std::int32_t References() const { return mReferences; }

    std::int32_t AddRef() override {
        mLog->Add("exchange", "AddRef");
        return ++mReferences;
    }
    std::int32_t Release() override {
        mLog->Add("exchange", "Release");
        return --mReferences;
    }
    Brio::Result QueryMap(const CFUUIDBytes& id, void** out) override {
        const bool asksForThis = std::memcmp(&id, &GuidOf(this), sizeof id) == 0;
        mLog->Add("exchange", asksForThis ? "QueryMap" : "QueryMap with another id");
        if (onQueryMap) {
            onQueryMap();
        }
        *out = answers ? static_cast<IToneSettingsDialogDataExchange*>(this) : nullptr;
        return result;
    }
    Brio::BrioUnknown* GetBrioUnknown() override { return this; }
    void SetPrefs(const BarsAndToneInfo& settings) override {
        mLog->Add("exchange", "SetPrefs");
        info = settings;
    }
    void GetPrefs(BarsAndToneInfo& settings) override {
        mLog->Add("exchange", "GetPrefs");
        settings = info;
    }
    void UserCancelled() override {
        mLog->Add("exchange", "UserCancelled");
        cancelled = true;
    }

private:
    std::shared_ptr<CallLog> mLog;
    std::int32_t mReferences = 0;
};

}  // namespace test
