#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/Tarn/UI_Tarn.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Records what the base calls, among the calls of the toolkit.
class RecordingTarn : public zeltarn::UI_Tarn {
public:
    RecordingTarn(test::FakeToolkit& toolkit, const zelui::drawbot::SupplierInterface* drawSupplier,
                  zelui::ui::UI_Node* parent)
        : UI_Tarn(u"Layout", drawSupplier, parent), mLog(toolkit.Log()) {}

    void Initialize() override { mLog->Add("tarn", "Initialize", GetView() ? "view" : "null"); }
    void Destruction() override { mLog->Add("tarn", "Destruction"); }
    void SetupPostCloseCallback() override { mLog->Add("tarn", "SetupPostCloseCallback"); }

private:
    std::shared_ptr<test::CallLog> mLog;
};

std::string ErrorOf(zeltarn::UI_Tarn& tarn, bool modeless) {
    std::istringstream script("script");
    try {
        tarn.ParseTarnScript(script, modeless);
    } catch (const zelcore::config::Error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

}  // namespace

TEST(UI_Tarn, BuildsInitializesAndRunsTheDialogInThisOrder) {
    test::FakeToolkit toolkit;
    {
        RecordingTarn tarn(toolkit, toolkit.DefaultDrawSupplier(), toolkit.MainWindow());
        toolkit.Calls().clear();
        EXPECT_FALSE(tarn.GetView());
        std::istringstream script("line 1\nline 2\n");
        tarn.ParseTarnScript(script, false);
        EXPECT_THAT(toolkit.Calls(), ElementsAre("toolkit.BuildDialog Layout \"line 1\nline 2\n\" supplier window",
                                                 "tarn.Initialize view", "tarn.SetupPostCloseCallback",
                                                 "dialog.RunModal", "tarn.Destruction"));
        EXPECT_EQ(toolkit.LiveNodes(), 1);
    }
    EXPECT_EQ(toolkit.LiveNodes(), 0);
}

TEST(UI_Tarn, InitializesWithoutAViewTooAndShowsNothing) {
    test::FakeToolkit toolkit;
    toolkit.buildsNothing = true;
    RecordingTarn tarn(toolkit, nullptr, nullptr);
    std::istringstream script;
    tarn.ParseTarnScript(script, false);
    EXPECT_THAT(toolkit.Calls(), ElementsAre("toolkit.BuildDialog Layout \"\" null null", "tarn.Initialize null"));
}

TEST(UI_Tarn, PassesOnWhatTheToolkitThrowsAndIsNotInitialized) {
    test::FakeToolkit toolkit;
    toolkit.onBuild = [] { throw std::runtime_error("no widgets today"); };
    RecordingTarn tarn(toolkit, nullptr, nullptr);
    std::istringstream script;
    EXPECT_THROW(tarn.ParseTarnScript(script, false), std::runtime_error);
    EXPECT_THAT(toolkit.Calls(), ElementsAre("toolkit.BuildDialog Layout \"\" null null"));
}

TEST(UI_Tarn, NeedsAToolkit) {
    zeltarn::UI_Tarn tarn(u"Layout", nullptr, nullptr);
    EXPECT_EQ(ErrorOf(tarn, false), "This program has no user interface to show a dialog with.");
}

TEST(UI_Tarn, OffersNoModelessDialogs) {
    test::FakeToolkit toolkit;
    zeltarn::UI_Tarn tarn(u"Layout", nullptr, nullptr);
    EXPECT_EQ(ErrorOf(tarn, true), "Dialogs can only be shown modally.");
    EXPECT_THAT(toolkit.Calls(), IsEmpty());
}

TEST(UI_Tarn, KnowsNoOtherLayouts) {
    zeltarn::UI_Tarn tarn(u"Layout", nullptr, nullptr);
    EXPECT_EQ(tarn.GetLayoutStream(u"Other"), "");
}

TEST(UI_Toolkit, IsTheOneInstalledLast) {
    EXPECT_EQ(zelui::ui::CurrentToolkit(), nullptr);
    {
        test::FakeToolkit first;
        EXPECT_EQ(zelui::ui::CurrentToolkit(), &first);
        {
            test::FakeToolkit second;
            EXPECT_EQ(zelui::ui::CurrentToolkit(), &second);
        }
        EXPECT_EQ(zelui::ui::CurrentToolkit(), &first);
        EXPECT_EQ(zelui::ui::InstallToolkit(nullptr), &first);
    }
    EXPECT_EQ(zelui::ui::CurrentToolkit(), nullptr);
}

TEST(UI_NodeManager, IsThereWithAndWithoutAToolkit) {
    zelui::ui::UI_NodeManager* const manager = zelui::ui::UI_NodeManager::Get(false);
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(zelui::ui::UI_NodeManager::Get(true), manager);
    EXPECT_EQ(manager->GetDefaultDrawSupplier(), nullptr);
    test::FakeToolkit toolkit;
    EXPECT_EQ(manager->GetDefaultDrawSupplier(), toolkit.DefaultDrawSupplier());
}
