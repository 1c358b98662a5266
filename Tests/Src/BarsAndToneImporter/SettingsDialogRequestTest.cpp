#include "Host/Interface/Core/Errors.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Src/ToneSettingsDialog/Layouts.h"
#include "Tests/Src/ToneSettingsDialog/OddRecords.h"
#include "Tests/Support/FakeToolkit/FakeToolkit.h"
#include "Tests/Support/GuardedSettings.h"
#include "Tests/Support/LoadedBundleCopy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

using test::FakeDialog;
using test::GuardedSettings;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr unsigned char kGuardByte = 0xA5;

void PressesOk(FakeDialog& dialog) {
    dialog.Button("okButton").Press();
}
void PressesCancel(FakeDialog& dialog) {
    dialog.Button("cancelButton").Press();
}

}  // namespace

// Requests reach the plug-in from outside, through the entry point of the bundle, and from inside, through the
// handler.
enum class Side { Bundle, Handler };

class SettingsDialogRequest : public testing::TestWithParam<Side> {
protected:
    SettingsDialogRequest() {
        bundle.AddResource("ToneSettingsDialog.tarn", "plain");
        bundle.AddResource("ToneSettingsWithIdentifiersDialog.tarn", "identifiers");
        toolkit.layout = test::IdentifiersLayout();
        std::memset(record.data(), kGuardByte, record.size());
        Record().prefs = nullptr;
        Record().useDefaults = 0;
    }

    void TearDown() override { EXPECT_EQ(toolkit.LiveNodes(), 0); }

    imGetPrefsRec& Record() { return *reinterpret_cast<imGetPrefsRec*>(record.data()); }

    std::int32_t Ask() {
        if (GetParam() == Side::Handler) {
            return barsGetPrefs(&Record());
        }
        return bundle.Entry()(kImportGetPrefs, nullptr, nullptr, &Record());
    }

    // The settings after a dialog over `settings` with what `person` does.
    BarsAndToneInfo Edit(const BarsAndToneInfo& settings, test::Person person) {
        toolkit.person = std::move(person);
        GuardedSettings buffer(settings);
        Record().prefs = buffer.Data();
        EXPECT_EQ(Ask(), 0);
        EXPECT_TRUE(buffer.GuardsIntact());
        return buffer.Get();
    }

    // That a request over odd settings throws an Exception with this text and leaves them as they are.
    template <class Exception>
    void ExpectFailure(const std::string& text) {
        for (const BarsAndToneInfo& settings : test::OddRecords()) {
            GuardedSettings buffer(settings);
            Record().prefs = buffer.Data();
            try {
                Ask();
                ADD_FAILURE() << "nothing was thrown";
            } catch (const Exception& exception) {
                EXPECT_EQ(exception.what(), text);
            }
            EXPECT_TRUE(buffer.Holds(settings));
            EXPECT_TRUE(buffer.GuardsIntact());
            EXPECT_EQ(toolkit.LiveNodes(), 0);
        }
    }

    test::LoadedBundleCopy bundle;
    test::FakeToolkit toolkit;
    std::array<unsigned char, sizeof(imGetPrefsRec)> record{};
};

INSTANTIATE_TEST_SUITE_P(Both, SettingsDialogRequest, testing::Values(Side::Bundle, Side::Handler),
                         [](const auto& side) { return side.param == Side::Bundle ? "ThroughTheBundle" : "Inside"; });

TEST_P(SettingsDialogRequest, OpensTheLayoutWithIdentifiersForStereoAndSurroundOnly) {
    struct Case {
        std::uint32_t channelType;
        const char* layout;
    };
    for (const Case& expected :
         {Case{2, "ToneSettingsWithIdentifiersDialog \"identifiers\""},
          Case{3, "ToneSettingsWithIdentifiersDialog \"identifiers\""}, Case{1, "ToneSettingsDialog \"plain\""},
          Case{0, "ToneSettingsDialog \"plain\""}, Case{4, "ToneSettingsDialog \"plain\""},
          Case{6, "ToneSettingsDialog \"plain\""}, Case{0x80000002, "ToneSettingsDialog \"plain\""}}) {
        toolkit.Calls().clear();
        Edit({.channelType = expected.channelType}, PressesCancel);
        EXPECT_THAT(toolkit.Calls(),
                    Contains(std::string("toolkit.BuildDialog ") + expected.layout + " supplier window"));
    }
}

TEST_P(SettingsDialogRequest, StoresWhatThePersonChose) {
    const BarsAndToneInfo edited =
        Edit({.channelType = 3, .numChannels = 6, .identifierFormat = EBUMultichannel}, [](FakeDialog& dialog) {
            dialog.Number("frequencyHotTextNumber").Type(440.0);
            dialog.Number("amplitudeHotTextNumber").Type(-20.0);
            dialog.Click("identifyChannelsBtn");
            dialog.Popup("identifierFormatPopup").Choose(1);
            PressesOk(dialog);
        });
    const BarsAndToneInfo expected{1, 48000.0F, 3, 6, 1, 440.0F, 0.1F, BLITS5_1};
    EXPECT_EQ(std::memcmp(&edited, &expected, sizeof edited), 0);
}

TEST_P(SettingsDialogRequest, LeavesOddSettingsByteForByteWhenThePersonCancels) {
    for (const BarsAndToneInfo& before : test::OddRecords()) {
        const BarsAndToneInfo after = Edit(before, [](FakeDialog& dialog) {
            if (!dialog.Number("frequencyHotTextNumber").IsDisabled()) {
                dialog.Number("frequencyHotTextNumber").Type(440.0);
            }
            PressesCancel(dialog);
        });
        EXPECT_EQ(std::memcmp(&before, &after, sizeof after), 0);
    }
}

TEST_P(SettingsDialogRequest, GoesByTheLastOfTwoPressesOnTheWayOut) {
    const BarsAndToneInfo before{.channelType = 1, .numChannels = 1};
    const auto edit = [](FakeDialog& dialog) { dialog.Number("frequencyHotTextNumber").Type(440.0); };
    const BarsAndToneInfo cancelled = Edit(before, [&](FakeDialog& dialog) {
        edit(dialog);
        PressesOk(dialog);
        PressesCancel(dialog);
    });
    EXPECT_EQ(cancelled.frequency, 1000.0F);
    const BarsAndToneInfo accepted = Edit(before, [&](FakeDialog& dialog) {
        edit(dialog);
        PressesCancel(dialog);
        PressesOk(dialog);
    });
    EXPECT_EQ(accepted.frequency, 440.0F);
}

TEST_P(SettingsDialogRequest, TouchesNothingOfTheRecordItself) {
    GuardedSettings buffer{BarsAndToneInfo()};
    Record().prefs = buffer.Data();
    const auto before = record;
    toolkit.person = PressesOk;
    EXPECT_EQ(Ask(), 0);
    EXPECT_EQ(record, before);
}

TEST_P(SettingsDialogRequest, ShowsNothingAndChangesNothingWithoutTheScripts) {
    std::filesystem::remove_all(bundle.Folder() / "Contents" / "Resources");
    for (const BarsAndToneInfo& before : test::OddRecords()) {
        const BarsAndToneInfo after = Edit(before, PressesOk);
        EXPECT_EQ(std::memcmp(&before, &after, sizeof after), 0);
    }
    EXPECT_THAT(toolkit.Calls(), Not(Contains(HasSubstr("BuildDialog"))));
}

TEST_P(SettingsDialogRequest, PassesOnWhatBuildingTheDialogThrowsAndWritesNothing) {
    toolkit.onBuild = [] { throw std::runtime_error("no widgets today"); };
    ExpectFailure<std::runtime_error>("no widgets today");
}

TEST_P(SettingsDialogRequest, PassesOnWhatTheModalRunThrowsAndWritesNothing) {
    toolkit.person = [](FakeDialog& dialog) {
        PressesOk(dialog);
        throw std::runtime_error("the screen went away");
    };
    ExpectFailure<std::runtime_error>("the screen went away");
}

TEST_P(SettingsDialogRequest, PassesOnWhatTheDrawSupplierThrowsAndWritesNothing) {
    toolkit.onGetDrawSupplier = [] { throw std::runtime_error("nothing to draw with"); };
    ExpectFailure<std::runtime_error>("nothing to draw with");
}

TEST_P(SettingsDialogRequest, PassesOnAControlOfAnotherTypeAndWritesNothing) {
    toolkit.layout = test::WithWrongType(test::IdentifiersLayout(), "okButton");
    ExpectFailure<zelcore::config::Error>("Invalid type conversion.");
}

TEST_P(SettingsDialogRequest, PassesOnAMissingButtonAndWritesNothing) {
    toolkit.layout = test::Without(test::IdentifiersLayout(), "cancelButton");
    ExpectFailure<Brio::NullInterfaceException>("A NULL interface pointer has been dereferenced.");
}

TEST_P(SettingsDialogRequest, PassesOnAMissingRootViewAndWritesNothing) {
    toolkit.buildsNothing = true;
    testing::internal::CaptureStderr();
    ExpectFailure<zelcore::config::Error>("An input contract violation has occurred!");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("mDialogPtr != NULL"));
}
