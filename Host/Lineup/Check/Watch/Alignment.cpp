#include "Host/Lineup/Check/Watch/Alignment.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace lineup {

inline namespace parts {

namespace {

constexpr double kTogether = 1;         // s of stamps, which are rounded
constexpr std::size_t kMostKept = 120;  // of these
constexpr double kOffsetJumps = 0.5;    // s: the sender's clock was set, or began anew
constexpr double kWhole = 1e-6;         // frames

// What is left of `value` in whole steps, from half a step before to half a step after.
double Rest(double value, double step) {
    return value - std::round(value / step) * step;
}

bool IsWhole(double value) {
    return std::abs(value - std::round(value)) < kWhole;
}

}  // namespace

void Alignment::HearStamp(double second, double stamp) {
    const double offset = second - stamp;
    if (!mOffsets.empty() && std::abs(offset - mOffsets.back().sum / mOffsets.back().count) > kOffsetJumps) {
        mFirstCycle.reset();
        mOffsets.clear();
    }
    if (mOffsets.empty() || second >= mOffsets.back().first + kTogether) {
        mOffsets.push_back({.first = second, .sum = 0, .count = 0});
    }
    mOffsets.back().sum += offset;
    ++mOffsets.back().count;
    if (mOffsets.size() > kMostKept) {
        mOffsets.pop_front();
    }
}

double Alignment::StampAt(double second) const {
    if (mOffsets.empty()) {
        return second;
    }
    const auto after = std::ranges::upper_bound(mOffsets, second, {}, &Offset::first);
    const Offset& offset = after == mOffsets.begin() ? *after : *std::prev(after);
    return second - offset.sum / offset.count;
}

double Alignment::SecondAt(double stamp) const {
    return mOffsets.empty() ? stamp : stamp + mOffsets.back().sum / mOffsets.back().count;
}

void Alignment::SeePicture(double stamp, double frameRate) {
    mFirstPicture = mFirstPicture.value_or(stamp);
    mPicture = stamp;
    mFrameRate = frameRate;
}

void Alignment::HearSequence(const HeardLineup& heard) {
    mCycle = StampAt(heard.cycleStart);
    mFirstCycle = mFirstCycle.value_or(mCycle);
    mSentCycle = heard.sentCycle;
}

WatchedAlignment Alignment::Now() const {
    WatchedAlignment now;
    if (mFirstPicture) {
        now.startMs = *mFirstPicture * 1000;
    }
    if (!mFirstCycle || mOffsets.empty()) {
        return now;
    }
    now.movedMs = Rest(mCycle - *mFirstCycle, mSentCycle) * 1000;
    if (mFirstPicture && mFrameRate > 0 && IsWhole(mFrameRate) && IsWhole(mFrameRate * mSentCycle)) {
        now.offsetMs = Rest(mCycle - mPicture, 1 / mFrameRate) * 1000;
    }
    return now;
}

}  // namespace parts

}  // namespace lineup
