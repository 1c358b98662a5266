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
    if (mCount == 0) {
        mOriginX = mSecondEnds;
        mOriginY = *mLeast;
    }
    const double x = mSecondEnds - mOriginX;
    const double y = *mLeast - mOriginY;
    ++mCount;
    mX += x;
    mY += y;
    mXX += x * x;
    mXY += x * y;
    mYY += y * y;
    mLeast.reset();
}

std::optional<double> FeedClock::SenderPpm() const {
    const double spread = mXX - mX * mX / mCount;
    if (mCount < kLeastCount || spread <= 0) {
        return std::nullopt;
    }
    const double slope = (mXY - mX * mY / mCount) / spread;
    const double rest = std::max(0.0, mYY - mY * mY / mCount - slope * slope * spread);
    const double doubt = std::sqrt(rest / (mCount - 2) / spread);
    return 2 * doubt * 1e6 > kDoubtPpm ? std::nullopt : std::optional(-slope * 1e6);
}

std::optional<double> FeedClock::TakeSpreadMs() {
    const auto spread = mShortest ? std::optional((mLongest - *mShortest) * 1000) : std::nullopt;
    mShortest.reset();
    return spread;
}

}  // namespace parts

}  // namespace lineup
