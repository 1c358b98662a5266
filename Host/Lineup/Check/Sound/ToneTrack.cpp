#include "Host/Lineup/Check/Sound/ToneTrack.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kOtherLevel = 1.35;  // and its inverse
constexpr std::size_t kSettled = 4;   // spectra

// Where a line through two points reaches `level`.
double Crossing(double timeA, double a, double timeB, double b, double level) {
    return a == b ? timeA : timeA + (timeB - timeA) * (level - a) / (b - a);
}

}  // namespace

void ToneTrack::Add(double time, const SpectralPeak& peak) {
    // Spectra that lie across an edge weigh little.
    const double weight = std::pow(peak.amplitude, 4);
    mWeight += weight;
    mWeightedFrequency += weight * peak.frequency;
    mWeightedAmplitude += weight * peak.amplitude;
    mMissed = 0;
    ++mCount;
    if (mHead.size() < kKept) {
        mHead.push_back({time, peak.amplitude});
    }
    if (mTail.size() == kKept) {
        mTail.erase(mTail.begin());
    }
    mTail.push_back({time, peak.amplitude});
}

double ToneTrack::Frequency() const {
    return mWeight > 0 ? mWeightedFrequency / mWeight : 0;
}

double ToneTrack::Amplitude() const {
    return mWeight > 0 ? mWeightedAmplitude / mWeight : 0;
}

bool ToneTrack::LevelHasMoved() const {
    if (mCount < 2 * kSettled || mTail.size() < kSettled) {
        return false;
    }
    const double level = Amplitude();
    const auto settled = mTail.end() - static_cast<std::ptrdiff_t>(kSettled);
    const auto [least, most] = std::ranges::minmax_element(settled, mTail.end(), {}, &Point::amplitude);
    const bool steady = most->amplitude < least->amplitude * 1.1;
    return steady && (least->amplitude > level * kOtherLevel || most->amplitude < level / kOtherLevel);
}

ToneRun ToneTrack::Run(bool goesOn) const {
    ToneRun run{mInput, Frequency(), Amplitude(), mHead.front().time, mTail.back().time, mOpenStart, goesOn};
    const double half = run.amplitude / 2;
    for (std::size_t i = 0; i + 1 < mHead.size(); ++i) {
        if (mHead[i].amplitude < half && mHead[i + 1].amplitude >= half) {
            run.on = Crossing(mHead[i].time, mHead[i].amplitude, mHead[i + 1].time, mHead[i + 1].amplitude, half);
            break;
        }
    }
    for (std::size_t i = mTail.size() - 1; i > 0; --i) {
        if (mTail[i].amplitude < half && mTail[i - 1].amplitude >= half) {
            run.off = Crossing(mTail[i - 1].time, mTail[i - 1].amplitude, mTail[i].time, mTail[i].amplitude, half);
            break;
        }
    }
    return run;
}

}  // namespace lineup::sound
