#include "Host/Interface/Core/Casts.h"
#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/Tarn/UI_Tarn.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Records what the base calls, among the calls of the toolkit.
class RecordingTarn : public zeltarn::UI_Tarn {
public:
    RecordingTarn(test::FakeToolkit& toolkit, const zelui::drawbot::SupplierInterface* drawSupplier,
                  zelui::ui::UI_Node* parent)
        : UI_Tarn(u"Layout", drawSupplier, parent), mLog(toolkit.Log()) {}

    void Initialize() override {
        mLog->Add("tarn", "Initialize", GetView() ? "view" : "null");
        if (onInitialize) {
            onInitialize();
        }
    }
    void Destruction() override { mLog->Add("tarn", "Destruction"); }
    void SetupPostCloseCallback() override { mLog->Add("tarn", "SetupPostCloseCallback"); }

    std::function<void()> onInitialize;

private:
    std::shared_ptr<test::CallLog> mLog;
};

std::string ErrorOf(zeltarn::UI_Tarn& tarn, bool modeless) {
    std::istringstream script("script");
    try {
        tarn.ParseTarnScript(script, modeless);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

void DereferenceNothing() {
    throw Brio::NullInterfaceException();
}

void ConvertToAnotherKind() {
    zelcore::config::ThrowError(zelcore::utility::kInvalidTypeConversion);
}

// The text and the explanation of the Exception that `initialize` ends a dialog's setting up with after these look-ups.
template <class Exception>
std::pair<std::string, std::string> SetupError(const zelui::ui::Lookups& lookups,
                                               const std::function<void()>& initialize) {
    test::FakeToolkit toolkit;
    toolkit.lookups = lookups;
    std::pair<std::string, std::string> said;
    {
        RecordingTarn tarn(toolkit, nullptr, nullptr);
        tarn.onInitialize = initialize;
        std::istringstream script("script");
        try {
            tarn.ParseTarnScript(script, false);
            ADD_FAILURE() << "nothing was thrown";
        } catch (const Exception& error) {
            const auto* const explained = dynamic_cast<const zelcore::config::Explained*>(&error);
            said = {error.what(), explained == nullptr ? "" : explained->Explanation()};
        }
        EXPECT_THAT(toolkit.Calls(), testing::Not(testing::Contains("dialog.RunModal")));
    }
    EXPECT_EQ(toolkit.LiveNodes(), 0);
    return said;
}

using Said = std::pair<std::string, std::string>;
constexpr const char* kNullInterface = "A NULL interface pointer has been dereferenced.";

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

// What the dialog threw arrives as it was thrown, and says in addition which control it was.
TEST(UI_Tarn, AddsTheControlsThatTheDialogCouldNotDoWithout) {
    EXPECT_EQ(SetupError<Brio::NullInterfaceException>({{"okButton"}, "", ""}, DereferenceNothing),
              Said(kNullInterface, "cannot set up the dialog Layout: its layout has no okButton"));
    EXPECT_EQ(SetupError<Brio::NullInterfaceException>({{"a", "b", "c"}, "d", "QLabel"}, DereferenceNothing),
              Said(kNullInterface, "cannot set up the dialog Layout: its layout has no a, no b and no c"));
}

TEST(UI_Tarn, AddsTheControlThatIsOfAnotherKind) {
    EXPECT_EQ(SetupError<zelcore::config::Error>({{"okButton"}, "list", "QComboBox"}, ConvertToAnotherKind),
              Said("Invalid type conversion.",
                   "cannot set up the dialog Layout: list is a QComboBox, which the dialog cannot use"));
}

TEST(UI_Tarn, PassesOnWhatHasNothingToDoWithControls) {
    const zelui::ui::Lookups whole{{}, "list", "QComboBox"};
    EXPECT_EQ(SetupError<Brio::NullInterfaceException>(whole, DereferenceNothing), Said(kNullInterface, ""));
    EXPECT_EQ(SetupError<zelcore::config::Error>({}, ConvertToAnotherKind), Said("Invalid type conversion.", ""));
    EXPECT_EQ(SetupError<zelcore::config::Error>(whole, [] { zelcore::config::ThrowError("$$$/a=no paint"); }),
              Said("no paint", ""));
    EXPECT_EQ(SetupError<std::runtime_error>({{"okButton"}, "", ""}, [] { throw std::runtime_error("no widgets"); }),
              Said("no widgets", ""));
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
