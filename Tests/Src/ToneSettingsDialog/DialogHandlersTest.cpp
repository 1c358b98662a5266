#include "Tests/Src/ToneSettingsDialog/DialogTest.h"
#include "Tests/Src/ToneSettingsDialog/OddRecords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using test::FakeDialog;
using test::SameBytes;
using testing::ElementsAre;

class DialogHandlers : public test::DialogTest {
protected:
    // Accepts a mono dialog after a level was typed, and gives the gain.
    float GainAfterTyping(double levelDb) {
        RunPlain([&](FakeDialog& dialog) {
            dialog.Number("amplitudeHotTextNumber").Type(levelDb);
            test::PressesOk(dialog);
        });
        return exchange.info.amplitude;
    }
};

TEST_F(DialogHandlers, StoreTheFrequencyThatIsTypedAsTheNearestFloat) {
    const BarsAndToneInfo before = exchange.info;
    RunPlain([](FakeDialog& dialog) {
        dialog.Number("frequencyHotTextNumber").Type(440.1);
        test::PressesOk(dialog);
    });
    BarsAndToneInfo expected = before;
    expected.frequency = 440.1F;
    EXPECT_TRUE(SameBytes(exchange.info, expected));
}

TEST_F(DialogHandlers, StoreTheFrequencyWithoutALimitOfTheirOwn) {
    RunPlain([](FakeDialog& dialog) {
        auto& frequency = dialog.Number("frequencyHotTextNumber");
        frequency.SetValue(-5.0);
        frequency.ReportChange();
        test::PressesOk(dialog);
    });
    EXPECT_EQ(exchange.info.frequency, -5.0F);
}

TEST_F(DialogHandlers, StoreTheLevelThatIsTypedAsAGain) {
    EXPECT_EQ(GainAfterTyping(0.0), 1.0F);
    EXPECT_EQ(GainAfterTyping(-20.0), 0.1F);
    EXPECT_NEAR(GainAfterTyping(-12.0412), 0.25F, 1e-7F);
    EXPECT_EQ(GainAfterTyping(6000.0), std::numeric_limits<float>::infinity());
    EXPECT_EQ(GainAfterTyping(-6000.0), 0.0F);
}

TEST_F(DialogHandlers, ChooseWhatIsPlayedAndEnableWhatBelongsToIt) {
    for (const bool identifies : {true, false}) {
        exchange.info.identifyChannels = identifies ? 0 : 1;
        RunWithIdentifiers([identifies](FakeDialog& dialog) {
            dialog.Click(identifies ? "identifyChannelsBtn" : "steadyTonesBtn");
            EXPECT_EQ(dialog.Number("frequencyHotTextNumber").IsDisabled(), identifies);
            EXPECT_EQ(dialog.Number("amplitudeHotTextNumber").IsDisabled(), identifies);
            EXPECT_EQ(dialog.Popup("identifierFormatPopup").IsDisabled(), !identifies);
            test::PressesOk(dialog);
        });
        EXPECT_EQ(exchange.info.identifyChannels, identifies ? 1U : 0U);
    }
}

TEST_F(DialogHandlers, EnableInTheOrderFrequencyLevelPopup) {
    RunWithIdentifiers([this](FakeDialog& dialog) {
        toolkit.Calls().clear();
        dialog.Click("identifyChannelsBtn");
        EXPECT_THAT(toolkit.Calls(),
                    ElementsAre("frequencyHotTextNumber.SetDisabled 1", "amplitudeHotTextNumber.SetDisabled 1",
                                "identifierFormatPopup.SetDisabled 0"));
    });
}

TEST_F(DialogHandlers, ReadOnlyTheSteadyTonesButton) {
    RunWithIdentifiers([](FakeDialog& dialog) {
        // Both on, which no group allows: the steady-tones button decides, whichever reports.
        dialog.RadioButton("identifyChannelsBtn").Switch(true);
        dialog.RadioButton("identifyChannelsBtn").ReportChange();
        test::PressesOk(dialog);
    });
    EXPECT_EQ(exchange.info.identifyChannels, 0U);
    RunWithIdentifiers([](FakeDialog& dialog) {
        dialog.RadioButton("steadyTonesBtn").Switch(false);
        dialog.RadioButton("steadyTonesBtn").ReportChange();
        test::PressesOk(dialog);
    });
    EXPECT_EQ(exchange.info.identifyChannels, 1U);
}

TEST_F(DialogHandlers, StoreTheSequenceThatIsChosenAndKeepItWhenNoItemIs) {
    exchange.info.channelType = 3;
    exchange.info.identifyChannels = 1;
    exchange.info.identifierFormat = EBUMultichannel;
    for (const std::int64_t item : {1, -1}) {
        RunWithIdentifiers([item](FakeDialog& dialog) {
            dialog.Popup("identifierFormatPopup").Choose(item);
            test::PressesOk(dialog);
        });
        EXPECT_EQ(exchange.info.identifierFormat, BLITS5_1);
    }
}

TEST_F(DialogHandlers, OfOkSetTheSettingsOnceAndEndTheRun) {
    RunPlain([this](FakeDialog& dialog) {
        toolkit.Calls().clear();
        test::PressesOk(dialog);
        EXPECT_FALSE(dialog.IsOpen());
        EXPECT_THAT(toolkit.Calls(), ElementsAre("exchange.SetPrefs", "dialog.Close"));
    });
    EXPECT_FALSE(exchange.cancelled);
}

TEST_F(DialogHandlers, OfCancelMarkItAndThrowTheEditsAway) {
    const BarsAndToneInfo before = exchange.info;
    RunWithIdentifiers([this](FakeDialog& dialog) {
        dialog.Number("frequencyHotTextNumber").Type(440.0);
        dialog.Number("amplitudeHotTextNumber").Type(-3.0);
        dialog.Click("identifyChannelsBtn");
        dialog.Popup("identifierFormatPopup").Choose(1);
        toolkit.Calls().clear();
        test::PressesCancel(dialog);
        EXPECT_FALSE(dialog.IsOpen());
        EXPECT_THAT(toolkit.Calls(), ElementsAre("exchange.UserCancelled", "dialog.Close"));
    });
    EXPECT_TRUE(exchange.cancelled);
    EXPECT_TRUE(SameBytes(exchange.info, before));
}

TEST_F(DialogHandlers, AreNotCalledWhenTheWindowIsClosed) {
    const BarsAndToneInfo before = exchange.info;
    RunPlain([](FakeDialog& dialog) { dialog.Number("frequencyHotTextNumber").Type(440.0); });
    EXPECT_FALSE(exchange.cancelled);
    EXPECT_TRUE(SameBytes(exchange.info, before));
}

TEST_F(DialogHandlers, AreNotCalledByOpeningTheDialogSoThatOkGivesOddRecordsBackByteForByte) {
    for (const BarsAndToneInfo& record : test::OddRecords()) {
        exchange.info = record;
        RunPlain(test::PressesOk);
        EXPECT_TRUE(SameBytes(exchange.info, record));
    }
}

TEST_F(DialogHandlers, AreNotCalledByOpeningTheIdentifiersDialogEitherButOfferedSequencesReplaceOthers) {
    for (const BarsAndToneInfo& record : test::OddRecords()) {
        exchange.info = record;
        RunWithIdentifiers(test::PressesOk);
        BarsAndToneInfo expected = record;
        if (record.channelType == 2 && record.identifierFormat > EBUStereo400) {
            expected.identifierFormat = EBUStereo1000;
        }
        if (record.channelType == 3 && record.identifierFormat != BLITS5_1) {
            expected.identifierFormat = EBUMultichannel;
        }
        EXPECT_TRUE(SameBytes(exchange.info, expected));
    }
}
