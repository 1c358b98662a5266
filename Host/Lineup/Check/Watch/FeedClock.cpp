#include "Host/Lineup/Check/Watch/FeedClock.h"

#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Watch/LineFit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace lineup {

inline namespace parts {

namespace {

constexpr double kHeldBack = 1;            // s of arrivals
constexpr double kStampsJump = 5;          // s: the sender's clock was set, or began anew
constexpr double kLeastSeconds = 10;       // that a line goes through
constexpr std::size_t kMostArrivals = 64;  // kept; an even number

// The line that most of the points lie by: the median of the slopes of all pairs, which a quarter of the points may
// miss by as much as they like (Theil and Sen), and least squares through those that lie no further off than chance has
// them.
LineFit LineThroughMost(const std::vector<double>& x, const std::vector<double>& y) {
    std::vector<double> slopes;
    for (std::size_t a = 0; a < x.size(); ++a) {
        for (std::size_t b = a + 1; b < x.size(); ++b) {
            slopes.push_back((y[b] - y[a]) / (x[b] - x[a]));
        }
    }
    const double slope = sound::MedianOf(std::move(slopes));
    std::vector<double> distances(y);
    for (std::size_t i = 0; i < x.size(); ++i) {
        distances[i] -= slope * x[i];
    }
    const double height = sound::MedianOf(distances);
    for (double& each : distances) {
        each = std::abs(each - height);
    }
    constexpr double kDeviations = 4.5;  // medians of the distances: three standard deviations of what is normal
    constexpr double kExact = 1e-6;      // s
    const double far = std::max(kExact, kDeviations * sound::MedianOf(distances));
    LineFit line;
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (distances[i] <= far) {
            line.Add(x[i], y[i]);
        }
    }
    return line;
}

}  // namespace

void FeedClock::Add(double stamp, double arrived) {
    if (mFirst && std::abs(stamp - mLastStamp) > kStampsJump) {
        *this = FeedClock();
    }
    mLastStamp = stamp;
    if (!mFirst) {
        mFirst = arrived;
        mStretchEnds = arrived + kHeldBack + mSeconds;
    }
    if (arrived < *mFirst + kHeldBack) {
        return;
    }
    if (arrived >= mStretchEnds) {
        CloseStretch();
        mStretchEnds = std::max(std::floor(arrived - *mFirst) + *mFirst, mStretchEnds) + mSeconds;
    }
    const double delay = arrived - stamp;
    if (!mLeast || delay < mLeast->delay) {
        mLeast = {arrived, delay};
    }
    mLongest = mShortest ? std::max(mLongest, delay) : delay;
    mShortest = std::min(delay, mShortest.value_or(delay));
}

void FeedClock::CloseStretch() {
    if (!mLeast) {
        return;
    }
    mArrivals.push_back(*mLeast);
    mLeast.reset();
    if (mArrivals.size() < kMostArrivals) {
        return;
    }
    for (std::size_t i = 0; i < kMostArrivals / 2; ++i) {
        const auto pair = mArrivals.begin() + static_cast<std::ptrdiff_t>(2 * i);
        mArrivals[i] = pair[0].delay < pair[1].delay ? pair[0] : pair[1];
    }
    mArrivals.resize(kMostArrivals / 2);
    mSeconds *= 2;
}

std::optional<double> FeedClock::SenderPpm() const {
    if (static_cast<double>(mArrivals.size()) * mSeconds < kLeastSeconds) {
        return std::nullopt;
    }
    std::vector<double> x;
    std::vector<double> y;
    for (const Arrival& arrival : mArrivals) {
        x.push_back(arrival.at - mArrivals.front().at);
        y.push_back(arrival.delay - mArrivals.front().delay);
    }
    const LineFit line = LineThroughMost(x, y);
    const auto slope = line.Slope();
    if (!slope || 2 * line.SlopeDoubt() * 1e6 > kDoubtPpm) {
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
