#include "Host/Lineup/Check/Watch/FeedClock.h"

#include <algorithm>
#include <cmath>

namespace lineup {

inline namespace parts {

namespace {

constexpr double kHeldBack = 1;     // s of arrivals
constexpr double kStampsJump = 5;   // s: the sender's clock was set, or began anew
constexpr double kLeastCount = 10;  // seconds that a line goes through

}  // namespace

void FeedClock::Add(double stamp, double arrived) {
    if (mFirst && std::abs(stamp - mLastStamp) > kStampsJump) {
        *this = FeedClock();
    }
    mLastStamp = stamp;
    if (!mFirst) {
        mFirst = arrived;
        mSecondEnds = arrived + kHeldBack + 1;
    }
    if (arrived < *mFirst + kHeldBack) {
        return;
    }
    if (arrived >= mSecondEnds) {
        CloseSecond();
        mSecondEnds = std::floor(arrived - *mFirst) + *mFirst + 1;
    }
    const double delay = arrived - stamp;
    mLeast = std::min(delay, mLeast.value_or(delay));
    mLongest = mShortest ? std::max(mLongest, delay) : delay;
    mShortest = std::min(delay, mShortest.value_or(delay));
}

void FeedClock::CloseSecond() {
    if (!mLeast) {
        return;
    }
    mSeconds.Add(mSecondEnds, *mLeast);
    mLeast.reset();
}

std::optional<double> FeedClock::SenderPpm() const {
    const auto slope = mSeconds.Slope();
    if (mSeconds.Count() < kLeastCount || !slope || 2 * mSeconds.SlopeDoubt() * 1e6 > kDoubtPpm) {
        return std::nullopt;
    }
    return -*slope * 1e6;
}

std::optional<double> FeedClock::TakeSpreadMs() {
    const auto spread = mShortest ? std::optional((mLongest - *mShortest) * 1000) : std::nullopt;
    mShortest.reset();
    return spread;
}

}  // namespace parts

}  // namespace lineup
