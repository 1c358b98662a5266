#include "Host/Lineup/Send/Pacer.h"

#include <algorithm>

namespace lineup {
inline namespace parts {

Pacer::Pacer(SendClock& clock, StreamOutput& output, const StreamTimes& times, std::optional<std::int64_t> originNs)
    : mClock(&clock),
      mOutput(&output),
      mTimes(times),
      mIsGiven(originNs.has_value()),
      mOrigin(originNs),
      mLastSent(clock.NowNs() - times.NsOf(kPacketsADatagram)) {}

bool Pacer::Send(std::int64_t first, std::span<const std::uint8_t> packets, SendStatus& status) {
    for (; !packets.empty(); packets = packets.subspan(kTsBytes), ++first) {
        if (mWaiting.empty()) {
            mFirst = first;
        }
        mWaiting.insert(mWaiting.end(), packets.begin(), packets.begin() + kTsBytes);
        if (Modulo(first + 1, kPacketsADatagram) == 0 && !Flush(status)) {
            return false;
        }
    }
    return true;
}

bool Pacer::Flush(SendStatus& status) {
    if (mWaiting.empty()) {
        return true;
    }
    if (!WaitForTurn(status)) {
        mWaiting.clear();
        return false;
    }
    if (!mOutput->Write(mWaiting)) {
        ++status.lostDatagrams;
    }
    ++status.datagrams;
    status.bytes += static_cast<std::int64_t>(mWaiting.size());
    mWaiting.clear();
    return true;
}

bool Pacer::HasLeapt(std::int64_t now) const {
    const std::int64_t late = now - (*mOrigin + mTimes.NsOf(mFirst));
    return late > kLeapNs || late < -kLeapNs;
}

// What is late is made up for in datagrams half as far apart as usual, so that no receiver is flooded.
bool Pacer::WaitForTurn(SendStatus& status) {
    std::int64_t now = mClock->NowNs();
    if (!mOrigin || HasLeapt(now)) {
        status.jumps += mOrigin ? 1 : 0;
        if (mIsGiven) {
            return false;
        }
        mOrigin = now - mTimes.NsOf(mFirst);
    }
    const std::int64_t due = *mOrigin + mTimes.NsOf(mFirst);
    const std::int64_t turn = std::max(due, std::min(mLastSent + mTimes.NsOf(kPacketsADatagram) / 2, due + kLeapNs));
    while (now < turn) {
        mClock->WaitUntilNs(turn);
        now = mClock->NowNs();
        if (turn - now > kLeapNs) {  // the clock was set back
            return WaitForTurn(status);
        }
    }
    mLastSent = now;
    constexpr double kNsAMs = 1e6;
    const double lateMs = static_cast<double>(now - due) / kNsAMs;
    status.worstLateMs = std::max(status.worstLateMs, lateMs);
    status.lateDatagrams += lateMs > kLateMs ? 1 : 0;
    return true;
}

}  // namespace parts
}  // namespace lineup
