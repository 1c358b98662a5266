// Every service of the host fails, at its first call, its second, and so on until the request no longer
// comes to that call: the error passes on, nothing is left referenced or allocated, and the host's settings
// are as they were.
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Services/Text/UnicodeText.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Src/ToneSettingsDialog/Layouts.h"
#include "Tests/Support/FailingHost/FaultPlan.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"
#include "Tests/Support/GuardedSettings.h"
#include "Tests/Support/LoadedBundleCopy.h"

#include <gtest/gtest.h>

#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <tuple>

namespace {

using test::Answer;
using test::FakeDialog;
using test::FaultPlan;
using test::GuardedSettings;
using test::Way;

// What becomes of a request in which a call fails.
enum class Outcome {
    PassesOn,   // what the service threw
    Unchanged,  // served, and the settings are as they were
    Served,     // served, and the settings are those of a dialog
    Any,        // one of these, or another error: which one depends on the call
};

struct Fault {
    const char* service;
    Way way;
    Outcome outcome;
    bool inBrokenDialog = false;  // the service is only asked when a dialog has no root view
};

constexpr const char* kWays[] = {" throws", " answers with nothing", " answers with nonsense"};

const Fault kFaults[] = {
    {"operator new", Way::Throws, Outcome::Any},  // a stream of the fakes may swallow it
    {"Allocate", Way::Throws, Outcome::PassesOn},
    {"Allocate", Way::Nothing, Outcome::Any},
    {"CFBundleGetBundleWithIdentifier", Way::Throws, Outcome::PassesOn},
    {"CFBundleGetBundleWithIdentifier", Way::Nothing, Outcome::Unchanged},
    {"CFBundleGetBundleWithIdentifier", Way::Nonsense, Outcome::Unchanged},
    {"GetBinaryFromModule", Way::Throws, Outcome::PassesOn},
    {"GetBinaryFromModule", Way::Nothing, Outcome::Unchanged},
    {"GetBinaryFromModule", Way::Nonsense, Outcome::Unchanged},
    {"AsciiToUTF16", Way::Throws, Outcome::PassesOn},
    {"AsciiToUTF16", Way::Nothing, Outcome::Unchanged},
    {"AsciiToUTF16", Way::Nonsense, Outcome::Unchanged},
    {"Localizer::Get", Way::Throws, Outcome::PassesOn},
    {"GetLocalizedString", Way::Throws, Outcome::PassesOn},
    {"GetLocalizedString", Way::Nothing, Outcome::Served},
    {"GetLocalizedString", Way::Nonsense, Outcome::Served},
    {"ThrowError", Way::Throws, Outcome::PassesOn, true},
    {"BreakAfterContractDialog", Way::Throws, Outcome::PassesOn, true},
    {"BreakAfterContractDialog", Way::Nothing, Outcome::Any, true},
    {"IsDebuggerAttached", Way::Throws, Outcome::PassesOn, true},
    {"UI_NodeManager::Get", Way::Throws, Outcome::PassesOn},
    {"UI_NodeManager::Get", Way::Nothing, Outcome::Served},
    {"DefaultDrawSupplier", Way::Throws, Outcome::PassesOn},
    {"DefaultDrawSupplier", Way::Nothing, Outcome::Served},
    {"FindMainTopLevelWindow", Way::Throws, Outcome::PassesOn},
    {"FindMainTopLevelWindow", Way::Nothing, Outcome::Served},
    {"MainWindow", Way::Throws, Outcome::PassesOn},
    {"UI_Tarn", Way::Throws, Outcome::PassesOn},
    {"ParseTarnScript", Way::Throws, Outcome::PassesOn},
    {"ParseTarnScript", Way::Nothing, Outcome::Unchanged},
    {"BuildDialog", Way::Throws, Outcome::PassesOn},
    {"BuildDialog", Way::Nothing, Outcome::Any},
    {"GetView", Way::Throws, Outcome::PassesOn},
    {"GetView", Way::Nothing, Outcome::Any},
    {"GetUINodePtr", Way::Throws, Outcome::PassesOn},
    {"GetUINodePtr", Way::Nothing, Outcome::Any},
    {"GetUINodePtr", Way::Nonsense, Outcome::Any},
    {"AddRef", Way::Throws, Outcome::PassesOn},
    {"NotifyWhenChanged", Way::Throws, Outcome::PassesOn},
    {"SetMaxValue", Way::Throws, Outcome::PassesOn},
    {"SetValue", Way::Throws, Outcome::PassesOn},
    {"GetValue", Way::Throws, Outcome::PassesOn},
    {"GetValue", Way::Nonsense, Outcome::Served},
    {"AddItem", Way::Throws, Outcome::PassesOn},
    {"AddItem", Way::Nonsense, Outcome::Served},
    {"SetDisabled", Way::Throws, Outcome::PassesOn},
    {"RunModal", Way::Throws, Outcome::PassesOn},
    {"RunModal", Way::Nothing, Outcome::Unchanged},
    {"Close", Way::Throws, Outcome::PassesOn},
    {"Close", Way::Nothing, Outcome::Served},
};

void ChangesEverythingAndPressesOk(FakeDialog& dialog) {
    dialog.Number("frequencyHotTextNumber").Type(440.0);
    dialog.Number("amplitudeHotTextNumber").Type(-20.0);
    dialog.Click("identifyChannelsBtn");
    dialog.Popup("identifierFormatPopup").Choose(1);
    dialog.Button("okButton").Press();
}

const BarsAndToneInfo kBefore{7, 44100.0F, 2, 2, 0, 1000.0F, 0.25F, EBUStereo1000};

}  // namespace

// Requests reach the plug-in from outside, through the entry point of the bundle, and from inside.
enum class Entrance { Bundle, Handler };

class FailingHost : public testing::TestWithParam<std::tuple<Entrance, Fault>> {
protected:
    // How one request with one failing call went.
    struct Run {
        bool struck = false;
        std::optional<std::string> error;
        BarsAndToneInfo after;
    };

    Run AskWith(int failing) {
        const Fault& fault = std::get<Fault>(GetParam());
        test::FakeToolkit toolkit;
        toolkit.layout = test::IdentifiersLayout();
        toolkit.person = ChangesEverythingAndPressesOk;
        toolkit.buildsNothing = fault.inBrokenDialog;
        toolkit.Log()->onCall = FaultPlan::Called;
        GuardedSettings buffer(kBefore);
        imGetPrefsRec record{};
        record.prefs = buffer.Data();
        const imGetPrefsRec recordBefore = record;
        Run run;
        {
            const FaultPlan plan(fault.service, fault.way, failing);
            try {
                EXPECT_EQ(Ask(record), 0);
            } catch (const std::exception& error) {
                run.error.emplace();  // its text below, when calls no longer fail
                mText.assign(error.what());
            }
            run.struck = plan.HasStruck();
        }
        if (run.error) {
            run.error = mText;
        }
        run.after = buffer.Get();
        EXPECT_EQ(toolkit.LiveNodes(), 0);
        EXPECT_TRUE(buffer.GuardsIntact());
        EXPECT_EQ(std::memcmp(&record, &recordBefore, sizeof record), 0);
        return run;
    }

    std::int32_t Ask(imGetPrefsRec& record) {
        return std::get<Entrance>(GetParam()) == Entrance::Handler
                   ? barsGetPrefs(&record)
                   : mBundle.Entry()(kImportGetPrefs, nullptr, nullptr, &record);
    }

    void Check(const Run& run) {
        const Fault& fault = std::get<Fault>(GetParam());
        const bool unchanged = std::memcmp(&run.after, &kBefore, sizeof kBefore) == 0;
        EXPECT_TRUE(!run.error || unchanged) << "prefs were written although " << *run.error;
        EXPECT_EQ(run.after.version, kBefore.version);
        EXPECT_EQ(run.after.sampleRate, kBefore.sampleRate);
        EXPECT_EQ(run.after.channelType, kBefore.channelType);
        EXPECT_EQ(run.after.numChannels, kBefore.numChannels);
        switch (fault.outcome) {
            case Outcome::PassesOn:
                EXPECT_EQ(run.error, fault.service);
                break;
            case Outcome::Unchanged:
                EXPECT_EQ(run.error, std::nullopt);
                EXPECT_TRUE(unchanged);
                break;
            case Outcome::Served:
                EXPECT_EQ(run.error, std::nullopt);
                EXPECT_FALSE(unchanged);
                break;
            case Outcome::Any:
                break;
        }
    }

private:
    test::LoadedBundleCopy mBundle;
    std::string mText = std::string(100, ' ');  // room enough
};

TEST_P(FailingHost, LeavesSettingsAndMemoryAsTheyWereAtWhicheverCallItFails) {
    AskWith(0);  // no call fails: what is made once is made
    int failing = 1;
    for (;; ++failing) {
        SCOPED_TRACE("call " + std::to_string(failing));
        const std::ptrdiff_t blocks = test::BlocksTaken();
        const std::ptrdiff_t smallBlocks = test::SmallBlocksTaken();
        bool struck = false;
        {
            const Run run = AskWith(failing);
            struck = run.struck;
            if (struck) {
                Check(run);
            }
        }
        EXPECT_EQ(test::BlocksTaken(), blocks);
        EXPECT_EQ(test::SmallBlocksTaken(), smallBlocks);
        if (!struck || HasFailure()) {
            break;
        }
    }
    EXPECT_GT(failing, 1) << "the request never came to this call";
}

namespace {

std::string NameOf(const testing::TestParamInfo<std::tuple<Entrance, Fault>>& row) {
    const auto& [entrance, fault] = row.param;
    std::string name = entrance == Entrance::Bundle ? "ThroughTheBundle_" : "Inside_";
    name += std::string(fault.service) + kWays[static_cast<int>(fault.way)];
    std::erase_if(name, [](char c) { return c == ' ' || c == ':'; });
    return name;
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(EveryService, FailingHost,
                         testing::Combine(testing::Values(Entrance::Bundle, Entrance::Handler),
                                          testing::ValuesIn(kFaults)),
                         NameOf);
