// Where audio and peak requests take their settings from.
#include "Tests/Src/BarsAndToneImporter/SoundRequests.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using test::Placement;
using test::RequestRecord;

constexpr std::uint32_t kCount = 64;

// One kind of request for kCount samples from sample 7 on, into `peaks`.
struct Kind {
    const char* name;
    std::int32_t (*send)(const void* prefs, const void* privateData, test::Peaks& peaks, const Placement& placement);
};

std::int32_t Audio(const void* prefs, const void* privateData, test::Peaks& peaks, const Placement& placement) {
    return test::Send(test::AudioRequest{.position = 7,
                                         .count = kCount,
                                         .buffers = peaks.maxima.Pointers(),
                                         .privateData = privateData,
                                         .prefs = prefs,
                                         .placement = placement});
}
std::int32_t Waveform(const void* prefs, const void* privateData, test::Peaks& peaks, const Placement& placement) {
    return test::Send(test::PeakRequest{.position = 7,
                                        .peakRate = 48000.0F,
                                        .count = kCount,
                                        .maxima = peaks.maxima.Pointers(),
                                        .minima = peaks.minima.Pointers(),
                                        .privateData = privateData,
                                        .prefs = prefs,
                                        .placement = placement});
}

class SoundSettings : public testing::TestWithParam<Kind> {
protected:
    static std::int32_t Send(const void* prefs, const void* privateData, test::Peaks& peaks,
                             const Placement& placement = {}) {
        return GetParam().send(prefs, privateData, peaks, placement);
    }
    // What was drawn is the tone of these settings. At 48000 Hz, audio and a waveform hold the same.
    static void ExpectToneOf(const BarsAndToneInfo& settings, test::Peaks& peaks) {
        EXPECT_TRUE(Hold(oracle::AnswerToAudio(settings, 7, kCount), peaks.maxima));
    }
};
INSTANTIATE_TEST_SUITE_P(Requests, SoundSettings, testing::Values(Kind{"Audio", Audio}, Kind{"Peaks", Waveform}),
                         [](const auto& row) { return row.param.name; });

const BarsAndToneInfo kOne{.numChannels = 1, .frequency = 440.0F};
const BarsAndToneInfo kOther{.numChannels = 2, .frequency = 1000.0F};

TEST_P(SoundSettings, WithoutThemARequestIsRefusedAndWritesNothing) {
    for (const Placement& placement : test::kPlacements) {
        test::Peaks peaks(kCount);
        EXPECT_EQ(Send(nullptr, nullptr, peaks, placement), 5);
        EXPECT_TRUE(Hold(oracle::Answer{}, peaks.maxima));
        EXPECT_TRUE(Hold(oracle::Answer{}, peaks.minima));
    }
}

TEST_P(SoundSettings, OfTheHostComeBeforeThePrivateCopys) {
    test::Peaks both(kCount);
    EXPECT_EQ(Send(&kOne, &kOther, both), 0);
    ExpectToneOf(kOne, both);
    test::Peaks copyAlone(kCount);
    EXPECT_EQ(Send(nullptr, &kOther, copyAlone), 0);
    ExpectToneOf(kOther, copyAlone);
}

TEST_P(SoundSettings, OfADescribedClipAreThoseOfItsPrivateCopy) {
    RequestRecord info(test::kInfoRecordSize);
    info.Put(178, 48000.0F).Put<void*>(206, nullptr);
    ASSERT_EQ(test::Request(37, nullptr, info.Data()), 0);
    test::Peaks peaks(kCount);
    EXPECT_EQ(Send(nullptr, info.Get<void*>(198), peaks), 0);
    ExpectToneOf({.sampleRate = 48000.0F}, peaks);
    EXPECT_EQ(test::Request(9, nullptr, info.Get<void*>(198)), 0);
}

TEST_P(SoundSettings, AreReadAtAnyAddress) {
    for (const Placement& placement : test::kPlacements) {
        RequestRecord settings(sizeof(BarsAndToneInfo), placement);
        settings.Put(0, kOne);
        test::Peaks peaks(kCount);
        EXPECT_EQ(Send(settings.Data(), nullptr, peaks, placement), 0);
        ExpectToneOf(kOne, peaks);
        EXPECT_TRUE(settings.IsUntouched());
    }
}

}  // namespace
