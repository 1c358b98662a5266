#include "Apps/studio/Views/MeterBallistics.h"

#include <lineup/Level.h>

#include <algorithm>

namespace studio {

void MeterBallistics::Update(double peak, double seconds) {
    const double peakDb = std::max(kLowestDb, lineup::DbFromGain(peak));
    mLevelDb = std::max({peakDb, mLevelDb - kFallDbPerSecond * seconds, kLowestDb});
    mHeldSeconds += seconds;
    if (peakDb >= mHoldDb) {
        mHoldDb = peakDb;
        mHeldSeconds = 0;
    } else if (mHeldSeconds > kHoldSeconds) {
        mHoldDb = std::max(mLevelDb, mHoldDb - kFallDbPerSecond * seconds);
    }
}

void MeterBallistics::Reset() {
    *this = {};
}

}  // namespace studio
