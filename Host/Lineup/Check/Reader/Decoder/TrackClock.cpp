#include "Host/Lineup/Check/Reader/Decoder/TrackClock.h"

#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <algorithm>
#include <cmath>

namespace lineup::decoding {

namespace {

constexpr double kRoundedTicks = 3;      // two stamps are off by one each, their difference by two
constexpr double kShareOfAFrame = 0.75;  // a packet that was lost is a frame or more

}  // namespace

TrackClock::TrackClock(double rate, double origin) : mRate(rate), mOrigin(origin) {}

std::int64_t TrackClock::StartAt(double seconds) const {
    const double start = seconds - mOrigin;
    return start > 0 && start <= kLatestStartSeconds ? std::llround(start * mRate) : 0;
}

std::int64_t TrackClock::GapBefore(double seconds, double tick, std::int64_t count) const {
    if (!mEndStamp) {
        return 0;
    }
    const double ahead = seconds - *mEndStamp;
    const double frame = static_cast<double>(std::max(count, mLastCount)) / mRate;
    const bool isGap = ahead > std::max(kRoundedTicks * tick, kShareOfAFrame * frame) && ahead <= kLongestGapSeconds;
    return isGap ? static_cast<std::int64_t>(ahead * mRate + 0.5) : 0;
}

TrackClock::Place TrackClock::Next(std::optional<double> seconds, double tick, std::int64_t count) {
    Place place{.position = mEnd, .gap = 0};
    if (!mHasBegun) {
        place.position = seconds ? StartAt(*seconds) : 0;
    } else if (seconds) {
        place.gap = GapBefore(*seconds, tick, count);
        place.position += place.gap;
    }
    const double length = static_cast<double>(count) / mRate;
    if (seconds) {
        mEndStamp = *seconds + length;
    } else if (mEndStamp) {
        mEndStamp = *mEndStamp + length;
    }
    mHasBegun = true;
    mLastCount = count;
    mEnd = place.position + count;
    return place;
}

}  // namespace lineup::decoding
