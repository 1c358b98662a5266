#include "Tests/Host/Desktop/OpenDialog.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <bit>
#include <limits>
#include <vector>

namespace {

using test::Bytes;
using test::ClipWith;
using test::DialogHands;
using test::EditWith;

BarsAndToneInfo With(std::uint32_t numChannels, float frequency, float amplitude) {
    BarsAndToneInfo settings = ClipWith(numChannels);
    settings.frequency = frequency;
    settings.amplitude = amplitude;
    return settings;
}

// Records that a person would not make and a file may hold. Each names a sequence its dialog offers, or
// has a dialog that offers none: a sequence that is not offered is replaced, which is another matter.
std::vector<BarsAndToneInfo> OddRecords() {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const auto taggedNaN = std::bit_cast<float>(0x7FA5C3E1U);
    std::vector<BarsAndToneInfo> records;
    for (const std::uint32_t channels : {1U, 2U, 6U}) {
        records.push_back(ClipWith(channels));
        records.push_back(With(channels, 997.001F, 0.1F));
        records.push_back(With(channels, 1e6F, 7.5F));
        records.push_back(With(channels, -3.0F, -0.25F));
        records.push_back(With(channels, -0.0F, 0.0F));
        records.push_back(With(channels, kInfinity, kInfinity));
        records.push_back(With(channels, -kInfinity, 1e-44F));
        records.push_back(With(channels, taggedNaN, taggedNaN));
        for (const float rateHz : {0.0F, -48000.0F, kInfinity, taggedNaN, 11025.5F}) {
            BarsAndToneInfo record = ClipWith(channels);
            record.sampleRate = rateHz;
            records.push_back(record);
        }
        for (const std::uint32_t identify : {1U, 2U, 0xFFFFFFFFU}) {
            BarsAndToneInfo record = ClipWith(channels);
            record.identifyChannels = identify;
            record.version = 0xDEADBEEF;
            records.push_back(record);
        }
    }
    BarsAndToneInfo unknownType = ClipWith(2);
    unknownType.channelType = 9;
    unknownType.identifierFormat = static_cast<IdentifierFormat>(77);
    records.push_back(unknownType);
    records.push_back(std::bit_cast<BarsAndToneInfo>(std::array<std::uint32_t, 8>{}));
    return records;
}

TEST(LeavingTheDialog, WithOKAndNothingEditedGivesBackTheSameBytes) {
    for (const BarsAndToneInfo& settings : OddRecords()) {
        const auto after = EditWith(settings, [](DialogHands& hands) { hands.Click("okButton"); });
        EXPECT_EQ(Bytes(after), Bytes(settings));
    }
}

TEST(LeavingTheDialog, WithOKAfterWalkingThroughAllControlsGivesBackTheSameBytes) {
    for (const BarsAndToneInfo& settings : OddRecords()) {
        const auto after = EditWith(settings, [](DialogHands& hands) {
            for (int i = 0; i < 8; ++i) {
                hands.Press(Qt::Key_Tab);
            }
            hands.Click("okButton");
        });
        EXPECT_EQ(Bytes(after), Bytes(settings));
    }
}

TEST(LeavingTheDialog, WithEnterInANumberThatWasNotEditedGivesBackTheSameBytes) {
    for (const BarsAndToneInfo& settings : OddRecords()) {
        for (const char* const number : {test::kFrequency, test::kLevel}) {
            const auto after = EditWith(settings, [&](DialogHands& hands) {
                hands.Find(hands.IsEnabled(number) ? number : "okButton").setFocus();
                hands.Press(Qt::Key_Return);
            });
            EXPECT_EQ(Bytes(after), Bytes(settings));
        }
    }
}

TEST(LeavingTheDialog, WithCancelGivesBackTheSameBytesWhateverWasEdited) {
    for (const BarsAndToneInfo& settings : OddRecords()) {
        const auto after = EditWith(settings, [](DialogHands& hands) {
            if (hands.IsEnabled(test::kFrequency)) {
                hands.FocusAndType(test::kFrequency, "440");
                hands.Drag(test::kLevel, -30);
            }
            hands.Click("cancelButton");
        });
        EXPECT_EQ(Bytes(after), Bytes(settings));
    }
}

TEST(LeavingTheDialog, ByTheCloseBoxGivesBackTheSameBytesWhateverWasEdited) {
    for (const BarsAndToneInfo& settings : OddRecords()) {
        const auto after = EditWith(settings, [](DialogHands& hands) {
            if (hands.IsEnabled(test::kFrequency)) {
                hands.FocusAndType(test::kFrequency, "440");
            }
            hands.ClickCloseBox();
        });
        EXPECT_EQ(Bytes(after), Bytes(settings));
    }
}

TEST(LeavingTheDialog, ByTheCloseBoxPressesNeitherButton) {
    int presses = 0;
    (void)EditWith(ClipWith(1), [&](DialogHands& hands) {
        for (const char* const name : {"okButton", "cancelButton"}) {
            QObject::connect(&hands.Find<QAbstractButton>(name), &QAbstractButton::clicked, [&] { ++presses; });
        }
        hands.ClickCloseBox();
    });
    EXPECT_EQ(presses, 0);
}

TEST(LeavingTheDialog, WithOKReplacesASequenceThatTheClipCannotPlay) {
    BarsAndToneInfo stereo = ClipWith(2);
    stereo.identifierFormat = BLITS5_1;
    BarsAndToneInfo surround = ClipWith(6);
    surround.identifierFormat = EBUStereo400;
    const auto pressOK = [](DialogHands& hands) { hands.Click("okButton"); };
    EXPECT_EQ(EditWith(stereo, pressOK).identifierFormat, EBUStereo1000);
    EXPECT_EQ(EditWith(surround, pressOK).identifierFormat, EBUMultichannel);
}

}  // namespace
