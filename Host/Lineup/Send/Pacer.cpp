#include "Host/Lineup/Send/Pacer.h"

#include <algorithm>

namespace lineup {
inline namespace parts {

Pacer::Pacer(SendClock& clock, std::optional<std::int64_t> originNs)
    : mClock(&clock), mIsGiven(originNs.has_value()), mOrigin(originNs) {}

bool Pacer::Wait(std::int64_t atNs, std::int64_t apartNs, SendStatus& status) {
    std::int64_t now = mClock->NowNs();
    std::int64_t turn = now;
    for (bool waits = true; waits;) {
        const std::int64_t late = mOrigin ? now - (*mOrigin + atNs) : 0;
        if (!mOrigin || late > kLeapNs || late < -kLeapNs) {
            status.jumps += mOrigin ? 1 : 0;
            mLastTurn.reset();
            if (mIsGiven) {
                return false;
            }
            mOrigin = now - atNs;
        }
        const std::int64_t due = *mOrigin + atNs;
        turn = mLastTurn ? std::max(due, *mLastTurn + apartNs / 2) : due;
        waits = now < turn;
        if (waits) {
            mClock->WaitUntilNs(turn);
            now = mClock->NowNs();
        }
    }
    // A system that wakes this thread late each time must not slow the stream down.
    mLastTurn = std::max(turn, now - (kTogether - 1) * apartNs / 2);
    constexpr double kNsAMs = 1e6;
    const double lateMs = static_cast<double>(now - (*mOrigin + atNs)) / kNsAMs;
    status.worstLateMs = std::max(status.worstLateMs, lateMs);
    status.lateDatagrams += lateMs > kLateMs ? 1 : 0;
    return true;
}

}  // namespace parts
}  // namespace lineup
