#include "Host/Lineup/Check/Sound/Find/ToneTrack.h"

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

void ToneTrack::Sums::Add(const SpectralPeak& peak) {
    const double add = std::pow(peak.amplitude, 4);
    weight += add;
    frequency += add * peak.frequency;
    amplitude += add * peak.amplitude;
}

void ToneTrack::Add(double time, const SpectralPeak& peak) {
    mMissed = 0;
    ++mCount;
    if (mHead.size() < kKept) {
        mHead.push_back({time, peak});
    }
    if (mTail.size() == kKept) {
        mOld.Add(mTail.front().peak);
        mTail.erase(mTail.begin());
    }
    mTail.push_back({time, peak});
}

ToneTrack::Sums ToneTrack::Total() const {
    Sums total = mOld;
    for (const Point& point : mTail) {
        total.Add(point.peak);
    }
    return total;
}

double ToneTrack::Frequency() const {
    const Sums total = Total();
    return total.weight > 0 ? total.frequency / total.weight : 0;
}

double ToneTrack::Amplitude() const {
    const Sums total = Total();
    return total.weight > 0 ? total.amplitude / total.weight : 0;
}

bool ToneTrack::LevelHasMoved() const {
    if (mCount < 2 * kKept || mTail.size() < kSettled) {
        return false;
    }
    const double level = OldLevel();
    const auto amplitude = [](const Point& point) { return point.peak.amplitude; };
    const auto settled = mTail.end() - static_cast<std::ptrdiff_t>(kSettled);
    const auto [least, most] = std::ranges::minmax_element(settled, mTail.end(), {}, amplitude);
    const bool steady = amplitude(*most) < amplitude(*least) * 1.1;
    return steady && (amplitude(*least) > level * kOtherLevel || amplitude(*most) < level / kOtherLevel);
}

ToneTrack ToneTrack::SplitWhereLevelMoved() {
    const double level = OldLevel();
    const double middle = (level + mTail.back().peak.amplitude) / 2;
    const bool rises = mTail.back().peak.amplitude > level;
    const auto isNew = [&](const Point& point) { return (point.peak.amplitude > middle) == rises; };
    auto split = mTail.end();
    while (split != mTail.begin() && isNew(*(split - 1))) {
        --split;
    }
    ToneTrack next(mInput, false);
    const double at = split == mTail.begin() ? split->time
                                             : Crossing((split - 1)->time, (split - 1)->peak.amplitude, split->time,
                                                        split->peak.amplitude, middle);
    next.mHead.push_back({at, mTail.back().peak});
    next.mTail.assign(split, mTail.end());
    next.mCount = next.mTail.size();
    mTail.erase(split, mTail.end());
    mTail.push_back({at, {Frequency(), level}});
    return next;
}

ToneRun ToneTrack::Run(bool goesOn) const {
    ToneRun run{mInput, Frequency(), Amplitude(), mHead.front().time, mTail.back().time, mOpenStart, goesOn};
    const double half = run.amplitude / 2;
    for (std::size_t i = 0; i + 1 < mHead.size(); ++i) {
        const double a = mHead[i].peak.amplitude;
        const double b = mHead[i + 1].peak.amplitude;
        if (a < half && b >= half) {
            run.on = Crossing(mHead[i].time, a, mHead[i + 1].time, b, half);
            break;
        }
    }
    for (std::size_t i = mTail.size() - 1; i > 0; --i) {
        const double a = mTail[i - 1].peak.amplitude;
        const double b = mTail[i].peak.amplitude;
        if (b < half && a >= half) {
            run.off = Crossing(mTail[i - 1].time, a, mTail[i].time, b, half);
            break;
        }
    }
    return run;
}

}  // namespace lineup::sound
