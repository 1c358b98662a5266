#include "Host/Lineup/Check/Watch/Alignment.h"

#include <gtest/gtest.h>

namespace {

lineup::HeardLineup CycleAt(double second, double sentCycle = 3) {
    lineup::HeardLineup heard;
    heard.cycleStart = second;
    heard.sentCycle = sentCycle;
    return heard;
}

// Twenty seconds of packets; the feed's samples stand `late` s behind their stamps.
void Stamp(lineup::Alignment& alignment, double first, double late) {
    for (int i = 0; i < 1000; ++i) {
        alignment.HearStamp(first + i * 0.02 + late, first + i * 0.02);
    }
}

TEST(Alignment, TellsTheSequenceAgainstThePicturesToHalfAFrame) {
    struct Case {
        double frameRate;
        double cycle;
        double late;   // s
        double found;  // ms
    };
    for (const Case& sent : {Case{25, 3, 0.007, 7}, Case{25, 3, -0.012, -12}, Case{50, 13.4, 0.015, -5}}) {
        lineup::Alignment alignment;
        Stamp(alignment, 0, 0);
        alignment.SeePicture(0.12, sent.frameRate);
        alignment.SeePicture(5.4, sent.frameRate);
        alignment.HearSequence(CycleAt(sent.cycle + sent.late, sent.cycle));
        EXPECT_NEAR(alignment.Now().startMs.value_or(0), 120, 1e-6);
        EXPECT_NEAR(alignment.Now().offsetMs.value_or(99), sent.found, 1e-6) << sent.found;
    }
    lineup::Alignment uneven;  // no number of frames is a cycle
    Stamp(uneven, 0, 0);
    uneven.SeePicture(0, 30000.0 / 1001);
    uneven.HearSequence(CycleAt(3));
    EXPECT_FALSE(uneven.Now().offsetMs.has_value());
}

TEST(Alignment, FollowsTheSequenceAgainstTheStreamsClock) {
    lineup::Alignment alignment;
    Stamp(alignment, 0, 0);
    alignment.HearSequence(CycleAt(1));
    Stamp(alignment, 20, 0.004);  // samples that nobody sent
    alignment.HearSequence(CycleAt(25.002));
    EXPECT_NEAR(alignment.Now().movedMs.value_or(99), -2, 1e-6);
    EXPECT_NEAR(alignment.SecondAt(40), 40.004, 1e-9);
    Stamp(alignment, 5000, -4960);  // the sender began anew
    alignment.HearSequence(CycleAt(41.3));
    EXPECT_NEAR(alignment.Now().movedMs.value_or(99), 0, 1e-6);
    EXPECT_NEAR(alignment.SecondAt(5001), 41, 1e-6);
}

}  // namespace
