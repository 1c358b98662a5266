#include <lineup/services/ContractReporter.h>
#include "Host/Interface/Core/Errors.h"
#include "Src/ToneSettingsDialog/ToneSettingsDialogImpl.h"
#include "Tests/Src/ToneSettingsDialog/DialogTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using test::FakeDialog;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kInvalidTypeConversion = "Invalid type conversion.";
constexpr const char* kNullInterface = "A NULL interface pointer has been dereferenced.";
constexpr const char* kContractViolation = "An input contract violation has occurred!";

// The text of the Exception that `action` throws.
template <class Exception, class Action>
std::string TextOf(const Action& action) {
    try {
        action();
    } catch (const Exception& exception) {
        return exception.what();
    } catch (const std::exception& exception) {
        return std::string("an exception of another type: ") + exception.what();
    }
    return "nothing was thrown";
}

}  // namespace

class DialogFailure : public test::DialogTest {
protected:
    struct Report {
        std::string condition;
        std::string file;
        std::string function;
        int line = 0;
    };

    DialogFailure() {
        zelcore::debug::SetContractReporter([this](const zelcore::debug::ContractReport& report) {
            reports.push_back({report.condition, report.file, report.function, report.line});
            return asksToBreak;
        });
    }
    ~DialogFailure() override { zelcore::debug::SetContractReporter({}); }

    template <class Exception>
    std::string ErrorWith(const std::vector<test::ControlSpec>& layout) {
        return TextOf<Exception>([&] { Run(kToneSettingsWithIdentifiersDialogID, layout, test::PressesOk); });
    }

    std::vector<Report> reports;
    bool asksToBreak = false;
};

TEST_F(DialogFailure, WithoutADataExchangeIsAContractViolation) {
    const auto run = [] { HandleToneSettingsDialog(kToneSettingsDialogID, {}, nullptr, nullptr); };
    EXPECT_EQ(TextOf<zelcore::config::Error>(run), kContractViolation);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].condition, "dataExchange != NULL");
    EXPECT_EQ(reports[0].file, "ToneSettingsDialog");
    EXPECT_EQ(reports[0].function,
              "void HandleToneSettingsDialog(const Brio::String &, Brio::BrioUnknownRef, "
              "const zelui::drawbot::SupplierInterface *, zelui::ui::UI_Node *)");
    EXPECT_GT(reports[0].line, 0);
    EXPECT_THAT(toolkit.Calls(), IsEmpty());
}

TEST_F(DialogFailure, OfAContractCarriesTheWholeKey) {
    try {
        HandleToneSettingsDialog(kToneSettingsDialogID, {}, nullptr, nullptr);
        FAIL() << "nothing was thrown";
    } catch (const zelcore::config::Error& error) {
        EXPECT_EQ(
            error.Key(),
            "$$$/zelcore/utility/Error/Contract/InputContractViolation=An input contract violation has occurred!");
    }
}

TEST_F(DialogFailure, OfAContractGoesOnWithoutADebuggerWhenTheReportAsksToBreak) {
    asksToBreak = true;
    EXPECT_EQ(
        TextOf<zelcore::config::Error>([] { HandleToneSettingsDialog(kToneSettingsDialogID, {}, nullptr, nullptr); }),
        kContractViolation);
}

TEST_F(DialogFailure, OfAQueryIsAContractViolationAndReleasesWhatWasTaken) {
    exchange.answers = false;
    for (const Brio::Result result : {Brio::kNoInterfaceError, Brio::kNoError}) {
        exchange.result = result;
        reports.clear();
        EXPECT_EQ(TextOf<zelcore::config::Error>([&] { RunPlain(test::PressesOk); }), kContractViolation);
        ASSERT_EQ(reports.size(), 1U);
        EXPECT_EQ(reports[0].condition, "dataExchange != NULL");
        EXPECT_EQ(exchange.References(), 0);
    }
}

TEST_F(DialogFailure, OfAQueryThatAnswersAllTheSameReleasesTheAnswerToo) {
    exchange.result = Brio::kNoInterfaceError;
    exchange.onQueryMap = [this] { exchange.AddRef(); };  // it hands its answer over
    EXPECT_EQ(TextOf<zelcore::config::Error>([&] { RunPlain(test::PressesOk); }), kContractViolation);
}

TEST_F(DialogFailure, OfAThrowingQueryReleasesWhatWasTaken) {
    exchange.onQueryMap = [] { throw std::runtime_error("no answer today"); };
    EXPECT_EQ(TextOf<std::runtime_error>([&] { RunPlain(test::PressesOk); }), "no answer today");
}

TEST_F(DialogFailure, WithoutARootViewIsAContractViolation) {
    toolkit.buildsNothing = true;
    EXPECT_EQ(TextOf<zelcore::config::Error>([&] { RunPlain(test::PressesOk); }), kContractViolation);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports[0].condition, "mDialogPtr != NULL");
    EXPECT_EQ(reports[0].file, "ToneSettingsDialog");
    EXPECT_EQ(reports[0].function, "virtual void ToneSettingsDialogImpl::Initialize()");
    EXPECT_GT(reports[0].line, 0);
}

TEST_F(DialogFailure, OfAControlOfAnotherTypeIsAnInvalidConversion) {
    for (const test::ControlSpec& spec : test::IdentifiersLayout()) {
        const auto layout = test::WithWrongType(test::IdentifiersLayout(), spec.name);
        EXPECT_EQ(ErrorWith<zelcore::config::Error>(layout), kInvalidTypeConversion) << spec.name;
        EXPECT_EQ(toolkit.LiveNodes(), 0) << spec.name;
        EXPECT_EQ(exchange.References(), 0) << spec.name;
    }
    EXPECT_THAT(reports, IsEmpty());
}

TEST_F(DialogFailure, WithoutAControlThatEveryLayoutNeedsIsANullInterface) {
    for (const char* const name : {"frequencyHotTextNumber", "amplitudeHotTextNumber", "cancelButton", "okButton"}) {
        const auto layout = test::Without(test::IdentifiersLayout(), name);
        EXPECT_EQ(ErrorWith<Brio::NullInterfaceException>(layout), kNullInterface) << name;
        EXPECT_EQ(toolkit.LiveNodes(), 0) << name;
        EXPECT_EQ(exchange.References(), 0) << name;
    }
}

TEST_F(DialogFailure, WithoutTheRadioButtonsIsANullInterface) {
    for (const char* const name : {"steadyTonesBtn", "identifyChannelsBtn"}) {
        const auto layout = test::Without(test::IdentifiersLayout(), name);
        EXPECT_EQ(ErrorWith<Brio::NullInterfaceException>(layout), kNullInterface) << name;
    }
}

TEST_F(DialogFailure, OfAToolkitThatReportsBeforeAllControlsAreThereDisablesNone) {
    toolkit.Log()->radioButtonsReportAtOnce = true;
    for (const char* const name : {"frequencyHotTextNumber", "amplitudeHotTextNumber"}) {
        toolkit.Calls().clear();
        const auto layout = test::Without(test::IdentifiersLayout(), name);
        EXPECT_EQ(ErrorWith<Brio::NullInterfaceException>(layout), kNullInterface) << name;
        EXPECT_THAT(toolkit.Calls(), testing::Not(testing::Contains(testing::HasSubstr("SetDisabled")))) << name;
        EXPECT_EQ(toolkit.LiveNodes(), 0) << name;
    }
}

TEST_F(DialogFailure, OfABuildPassesThroughAndReleasesEverything) {
    toolkit.onBuild = [] { throw std::runtime_error("no widgets today"); };
    EXPECT_EQ(TextOf<std::runtime_error>([&] { RunPlain(test::PressesOk); }), "no widgets today");
}

TEST_F(DialogFailure, OfTheModalRunPassesThroughAndReleasesEverything) {
    const auto run = [&] {
        RunWithIdentifiers([](FakeDialog& /*dialog*/) { throw std::runtime_error("the screen went away"); });
    };
    EXPECT_EQ(TextOf<std::runtime_error>(run), "the screen went away");
    EXPECT_FALSE(exchange.cancelled);
}

TEST_F(DialogFailure, OfAMessageOfAnotherKindIsAnInvalidConversion) {
    RunWithIdentifiers([](FakeDialog& dialog) {
        zelui::ui::Message message;
        const auto report = [&](auto& control) {
            EXPECT_EQ(TextOf<zelcore::config::Error>([&] { control.Report(&message); }), kInvalidTypeConversion);
            EXPECT_EQ(TextOf<zelcore::config::Error>([&] { control.Report(nullptr); }), kInvalidTypeConversion);
        };
        report(dialog.Number("frequencyHotTextNumber"));
        report(dialog.Number("amplitudeHotTextNumber"));
        report(dialog.RadioButton("steadyTonesBtn"));
        report(dialog.RadioButton("identifyChannelsBtn"));
        report(dialog.Popup("identifierFormatPopup"));
        report(dialog.Button("okButton"));
        report(dialog.Button("cancelButton"));
        EXPECT_TRUE(dialog.IsOpen());
    });
}

TEST_F(DialogFailure, OfAnEmptyExchangeEndsTheConstruction) {
    const auto construct = [] { ToneSettingsDialogImpl(kToneSettingsDialogID, nullptr, nullptr, {}); };
    EXPECT_EQ(TextOf<Brio::NullInterfaceException>(construct), kNullInterface);
}

TEST_F(DialogFailure, WithoutAToolkitIsAnErrorOfTheHost) {
    zelui::ui::InstallToolkit(nullptr);
    EXPECT_EQ(TextOf<zelcore::config::Error>([&] { RunPlain(test::PressesOk); }),
              "This program has no user interface to show a dialog with.");
}
