#include "Host/Lineup/Check/Reader/Decoder/PictureSampling.h"

#include <gtest/gtest.h>

namespace {

using lineup::decoding::PictureSampling;
using Taken = PictureSampling::Taken;

constexpr double kRate = 25;
constexpr double kHour = 3600;
constexpr int kFrames = 90000;
constexpr int kGroup = 50;  // frames

// A still card for an hour, with one frame that differs.
struct Recording {
    bool standAlone;
    int odd;
    std::int64_t oddBytes;

    [[nodiscard]] lineup::decoding::PacketFacts At(int frame) const {
        const bool isKey = standAlone || frame % kGroup == 0;
        return {.seconds = frame / kRate,
                .isKey = isKey,
                .isDamaged = false,
                .bytes = frame == odd ? oddBytes
                         : isKey      ? 200000
                                      : 60};
    }
};

struct Tally {
    int taken = 0;
    Taken odd = Taken::No;
};

Tally Play(const Recording& recording) {
    PictureSampling sampling(recording.standAlone, kRate, kHour);
    Tally tally;
    for (int frame = 0; frame < kFrames; ++frame) {
        const Taken taken = sampling.Takes(recording.At(frame));
        tally.taken += taken != Taken::No ? 1 : 0;
        tally.odd = frame == recording.odd ? taken : tally.odd;
    }
    return tally;
}

TEST(PictureSampling, TakesAFewHundredFramesOfAnHour) {
    for (const bool standAlone : {true, false}) {
        EXPECT_NEAR(Play({standAlone, -1, 0}).taken, PictureSampling::kMostFrames, 2);
    }
}

TEST(PictureSampling, TakesAFrameWhosePacketHasAnotherSize) {
    EXPECT_EQ(Play({true, 40001, 30000}).odd, Taken::Alone);
    EXPECT_EQ(Play({false, 40001, 5000}).odd, Taken::WithGroup);
    EXPECT_EQ(Play({false, 40001, 200}).odd, Taken::No);
}

// What differs now and then is looked at however long a stream goes on.
TEST(PictureSampling, DoesNotTireOfAStream) {
    PictureSampling stream(false, kRate, 0);
    int odd = 0;
    for (int frame = 0; frame < 2 * kFrames; ++frame) {
        const bool isKey = frame % kGroup == 0;
        const bool isOdd = frame > kGroup * 4 && frame % 250 == 20;
        const auto bytes = isKey ? 200000 : isOdd ? 5000 : 60;
        odd += stream.Takes({frame / kRate, isKey, false, bytes}) == Taken::WithGroup && isOdd ? 1 : 0;
    }
    EXPECT_EQ(odd, 2 * kFrames / 250 - 1);
}

TEST(PictureSampling, TakesNoMoreThanTwiceAsManyWhereEveryPacketDiffers) {
    PictureSampling sampling(true, kRate, kHour);
    int taken = 0;
    for (int frame = 0; frame < kFrames; ++frame) {
        const auto bytes = 1000 + 100000 * std::int64_t{frame % 2};
        taken += sampling.Takes({frame / kRate, true, false, bytes}) != Taken::No ? 1 : 0;
    }
    EXPECT_LE(taken, PictureSampling::kMostFrames + PictureSampling::kMostMore + 2);
}

}  // namespace
