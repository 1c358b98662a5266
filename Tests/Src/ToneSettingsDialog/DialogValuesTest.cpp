#include "Tests/Src/ToneSettingsDialog/DialogTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <string>

using test::FakeDialog;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class DialogValues : public test::DialogTest {
protected:
    // What the popup of a clip of `channelType` shows for `format`, and the format that OK gives back.
    struct Popup {
        std::vector<std::string> labels;
        std::int64_t chosen = -1;
        IdentifierFormat accepted;
    };
    Popup PopupFor(std::uint32_t channelType, IdentifierFormat format) {
        exchange.info.channelType = channelType;
        exchange.info.identifierFormat = format;
        Popup popup;
        RunWithIdentifiers([&](FakeDialog& dialog) {
            popup.labels = dialog.Popup("identifierFormatPopup").Labels();
            popup.chosen = dialog.Popup("identifierFormatPopup").GetValue();
            test::PressesOk(dialog);
        });
        popup.accepted = exchange.info.identifierFormat;
        return popup;
    }
};

TEST_F(DialogValues, LimitTheToneToHalfTheSampleRate) {
    exchange.info.sampleRate = 48000.0F;
    double reached = 0.0;
    RunPlain([&](FakeDialog& dialog) {
        dialog.Number("frequencyHotTextNumber").Type(30000.0);
        reached = dialog.Number("frequencyHotTextNumber").GetValue();
        test::PressesOk(dialog);
    });
    EXPECT_EQ(reached, 24000.0);
    EXPECT_EQ(exchange.info.frequency, 24000.0F);
}

TEST_F(DialogValues, HalveTheSampleRateInDoublePrecision) {
    exchange.info.sampleRate = std::numeric_limits<float>::denorm_min();  // 2^-149: its half is below every float
    RunPlain([](FakeDialog& dialog) {
        dialog.Number("frequencyHotTextNumber").Type(1.0);
        test::PressesOk(dialog);
    });
    EXPECT_THAT(toolkit.Calls(), Contains("frequencyHotTextNumber.SetMaxValue 7.0064923216240854e-46"));  // 2^-150
}

TEST_F(DialogValues, ShowAFrequencyAboveTheLimitAsItIs) {
    exchange.info.frequency = 40000.0F;
    RunPlain(test::PressesOk);
    EXPECT_THAT(toolkit.Calls(), Contains("frequencyHotTextNumber.SetValue 40000"));
    EXPECT_EQ(exchange.info.frequency, 40000.0F);
}

TEST_F(DialogValues, ShowTheGainInDecibels) {
    for (const auto& [gain, shown] : {std::pair{0.0F, "-300"}, {1.0F, "0"}}) {
        exchange.info.amplitude = gain;
        RunPlain(test::ClosesTheWindow);
        EXPECT_THAT(toolkit.Calls(), Contains(std::string("amplitudeHotTextNumber.SetValue ") + shown));
    }
}

TEST_F(DialogValues, OfferTheSequencesOfTheClipsTypeAndReplaceAnyOtherByTheFirst) {
    const std::vector<std::string> stereo = {"EBU Stereo (1000 Hz)", "EBU Stereo (400 Hz)"};
    const std::vector<std::string> surround = {"EBU Multichannel (5.1)", "BLITS (5.1)"};
    struct Case {
        std::uint32_t channelType;
        std::uint32_t format;
        std::vector<std::string> labels;
        std::int64_t chosen;
        std::uint32_t accepted;
    };
    for (const Case& row : {Case{2, EBUStereo1000, stereo, 0, EBUStereo1000},
                            {2, EBUStereo400, stereo, 1, EBUStereo400},
                            {2, EBUMultichannel, stereo, 0, EBUStereo1000},
                            {2, BLITS5_1, stereo, 0, EBUStereo1000},
                            {2, 7, stereo, 0, EBUStereo1000},
                            {3, EBUMultichannel, surround, 0, EBUMultichannel},
                            {3, BLITS5_1, surround, 1, BLITS5_1},
                            {3, EBUStereo1000, surround, 0, EBUMultichannel},
                            {3, EBUStereo400, surround, 0, EBUMultichannel},
                            {3, 0xFFFFFFFF, surround, 0, EBUMultichannel},
                            {0, BLITS5_1, {}, -1, BLITS5_1},
                            {1, BLITS5_1, {}, -1, BLITS5_1},
                            {4, BLITS5_1, {}, -1, BLITS5_1},
                            {0xFFFFFFFF, BLITS5_1, {}, -1, BLITS5_1}}) {
        const Popup popup = PopupFor(row.channelType, std::bit_cast<IdentifierFormat>(row.format));
        EXPECT_EQ(popup.labels, row.labels) << "channel type " << row.channelType;
        EXPECT_EQ(popup.chosen, row.chosen) << "channel type " << row.channelType << ", format " << row.format;
        EXPECT_EQ(popup.accepted, row.accepted) << "channel type " << row.channelType << ", format " << row.format;
    }
}

TEST_F(DialogValues, SwitchNeitherRadioButtonOnForAKindThatNobodyKnows) {
    exchange.info.identifyChannels = 2;
    RunWithIdentifiers(test::PressesOk);
    EXPECT_THAT(toolkit.Calls(), Contains("steadyTonesBtn.SetValue 0"));
    EXPECT_THAT(toolkit.Calls(), Contains("identifyChannelsBtn.SetValue 0"));
    // It plays as a steady tone, so that is what can be edited; it is kept until a person chooses.
    EXPECT_THAT(toolkit.Calls(), Contains("frequencyHotTextNumber.SetDisabled 0"));
    EXPECT_THAT(toolkit.Calls(), Contains("identifierFormatPopup.SetDisabled 1"));
    EXPECT_EQ(exchange.info.identifyChannels, 2U);
}

TEST_F(DialogValues, OfTheMonoLayoutLeaveItsIdentifierControlsAloneEvenWhenItHasThem) {
    exchange.info.identifyChannels = 1;
    Run(kToneSettingsDialogID, test::IdentifiersLayout(), [](FakeDialog& dialog) {
        EXPECT_FALSE(dialog.Number("frequencyHotTextNumber").IsDisabled());
        EXPECT_FALSE(dialog.Number("amplitudeHotTextNumber").IsDisabled());
        test::PressesOk(dialog);
    });
    for (const char* const name : {"steadyTonesBtn", "identifyChannelsBtn", "identifierFormatPopup", "SetDisabled"}) {
        EXPECT_THAT(toolkit.Calls(), Not(Contains(HasSubstr(name))));
    }
    EXPECT_EQ(exchange.info.identifyChannels, 1U);
}

TEST_F(DialogValues, TellLayoutsApartByTheExactName) {
    for (const std::string name : {"tonesettingswithidentifiersdialog", "ToneSettingsWithIdentifiersDialo"}) {
        bundle.AddResource(name + ".tarn", "script");
        Run(Brio::String(name.begin(), name.end()), test::IdentifiersLayout(), test::PressesOk);
    }
    EXPECT_THAT(toolkit.Calls(), Not(Contains(HasSubstr("steadyTonesBtn"))));
}

TEST_F(DialogValues, DoWithoutIdentifierFormats) {
    exchange.info.identifyChannels = 1;
    exchange.info.identifierFormat = BLITS5_1;
    Run(kToneSettingsWithIdentifiersDialogID, test::Without(test::IdentifiersLayout(), "identifierFormatPopup"),
        test::PressesOk);
    EXPECT_THAT(toolkit.Calls(), Not(Contains(HasSubstr("SetDisabled"))));
    EXPECT_EQ(exchange.info.identifierFormat, BLITS5_1);
}
