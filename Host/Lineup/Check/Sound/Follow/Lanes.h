#pragma once

#include <lineup/CheckReport.h>
#include "Host/Lineup/Check/Sound/Follow/Lineup.h"
#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <cstdint>
#include <vector>

namespace lineup::sound {

/// Draws the lanes of a report: the peaks of all hops of the recording, ever coarser the longer it is.
class Lanes {
public:
    Lanes(std::size_t inputs, double hopSeconds);

    /// Takes the hops that have come into the history since the last call.
    void Advance(const History& history);

    /// What was found, and what was due of the line-up, if there is one.
    [[nodiscard]] SoundLanes Draw(const Lineup* lineup, double startSeconds) const;

private:
    void Halve();

    double mHopSeconds;
    std::int64_t mHopsPerPoint = 1;
    std::int64_t mDone = 0;
    std::vector<std::vector<float>> mPeaks;
};

}  // namespace lineup::sound
