#include "Src/ToneSettingsDialog/ToneSettingsDialogImpl.h"
#include "Tests/Src/ToneSettingsDialog/DialogTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

using testing::ElementsAreArray;

namespace {

using Calls = std::vector<std::string>;

Calls operator+(Calls a, const Calls& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const Calls kBefore = {
    "exchange.AddRef",    // the caller's own reference
    "exchange.AddRef",    // the reference taken for the question
    "exchange.QueryMap",  //
    "exchange.AddRef",    // the dialog's
    "exchange.GetPrefs",
};

const Calls kFindNumbers = {
    "dialog.GetUINodePtr frequencyHotTextNumber 1", "frequencyHotTextNumber.NotifyWhenChanged",
    "frequencyHotTextNumber.SetMaxValue 24000",     "dialog.GetUINodePtr amplitudeHotTextNumber 1",
    "amplitudeHotTextNumber.NotifyWhenChanged",
};

const Calls kFindIdentifiers = {
    "dialog.GetUINodePtr steadyTonesBtn 1",        "steadyTonesBtn.NotifyWhenChanged",
    "dialog.GetUINodePtr identifyChannelsBtn 1",   "identifyChannelsBtn.NotifyWhenChanged",
    "dialog.GetUINodePtr identifierFormatPopup 1", "identifierFormatPopup.NotifyWhenChanged",
};

const Calls kFindButtons = {
    "dialog.GetUINodePtr cancelButton 1",
    "cancelButton.NotifyWhenChanged",
    "dialog.GetUINodePtr okButton 1",
    "okButton.NotifyWhenChanged",
};

// 1000 Hz; 20 log10(0.25) = -12.0411998 dB, of which the nearest float is shown.
const Calls kShowNumbers = {
    "frequencyHotTextNumber.SetValue 1000",
    "amplitudeHotTextNumber.SetValue -12.041199684143066",
};

const Calls kAfter = {
    "exchange.Release",  // the dialog's
    "exchange.Release",  // the one taken for the question
    "exchange.Release",  // the caller's own
};

}  // namespace

class DialogOrder : public test::DialogTest {};

TEST_F(DialogOrder, OfAMonoDialogThatIsAccepted) {
    exchange.info.channelType = 1;
    RunPlain(test::PressesOk);
    const Calls expected = kBefore + Calls{"toolkit.BuildDialog ToneSettingsDialog \"plain\" null null"} +
                           kFindNumbers + kFindButtons + kShowNumbers +
                           Calls{"dialog.RunModal", "exchange.SetPrefs", "dialog.Close"} + kAfter;
    EXPECT_THAT(toolkit.Calls(), ElementsAreArray(expected));
}

TEST_F(DialogOrder, OfAStereoDialogThatIsCancelled) {
    exchange.info.identifierFormat = EBUStereo400;
    RunWithIdentifiers(test::PressesCancel);
    const Calls expected = kBefore +
                           Calls{"toolkit.BuildDialog ToneSettingsWithIdentifiersDialog \"identifiers\" null null"} +
                           kFindNumbers + kFindIdentifiers + kFindButtons + kShowNumbers +
                           Calls{"steadyTonesBtn.SetValue 1",
                                 "identifyChannelsBtn.SetValue 0",
                                 "identifierFormatPopup.AddItem EBU Stereo (1000 Hz)",
                                 "identifierFormatPopup.AddItem EBU Stereo (400 Hz)",
                                 "identifierFormatPopup.SetValue 0",
                                 "identifierFormatPopup.SetValue 1",
                                 "frequencyHotTextNumber.SetDisabled 0",
                                 "amplitudeHotTextNumber.SetDisabled 0",
                                 "identifierFormatPopup.SetDisabled 1",
                                 "dialog.RunModal",
                                 "exchange.UserCancelled",
                                 "dialog.Close"} +
                           kAfter;
    EXPECT_THAT(toolkit.Calls(), ElementsAreArray(expected));
}

TEST_F(DialogOrder, OfAnIdentifyingSurroundDialogWhoseWindowIsClosed) {
    exchange.info.channelType = 3;
    exchange.info.identifyChannels = 1;
    exchange.info.identifierFormat = BLITS5_1;
    RunWithIdentifiers(test::ClosesTheWindow);
    const Calls expected = kBefore +
                           Calls{"toolkit.BuildDialog ToneSettingsWithIdentifiersDialog \"identifiers\" null null"} +
                           kFindNumbers + kFindIdentifiers + kFindButtons + kShowNumbers +
                           Calls{"steadyTonesBtn.SetValue 0",
                                 "identifyChannelsBtn.SetValue 1",
                                 "identifierFormatPopup.AddItem EBU Multichannel (5.1)",
                                 "identifierFormatPopup.AddItem BLITS (5.1)",
                                 "identifierFormatPopup.SetValue 0",
                                 "identifierFormatPopup.SetValue 1",
                                 "frequencyHotTextNumber.SetDisabled 1",
                                 "amplitudeHotTextNumber.SetDisabled 1",
                                 "identifierFormatPopup.SetDisabled 0",
                                 "dialog.RunModal"} +
                           kAfter;
    EXPECT_THAT(toolkit.Calls(), ElementsAreArray(expected));
}

TEST_F(DialogOrder, OfDestructionIsTheExchangeThenTheControlsFromThePopupToTheRootView) {
    toolkit.layout = test::IdentifiersLayout();
    {
        ToneSettingsDialogImpl dialog(kToneSettingsWithIdentifiersDialogID, nullptr, nullptr,
                                      Brio::InterfaceRef<IToneSettingsDialogDataExchange>(&exchange));
        std::istringstream script("identifiers");
        dialog.ParseTarnScript(script, false);
        toolkit.Calls().clear();
        toolkit.Log()->recordReferences = true;
    }
    const Calls destruction(toolkit.Calls().begin(), toolkit.Calls().begin() + 8);
    EXPECT_THAT(destruction,
                ElementsAreArray(Calls{"exchange.Release", "identifierFormatPopup.Release",
                                       "amplitudeHotTextNumber.Release", "frequencyHotTextNumber.Release",
                                       "identifyChannelsBtn.Release", "steadyTonesBtn.Release", "dialog.Release",
                                       "dialog.Release"}));  // the dialog's own, then its base's
}
