#include "Host/Lineup/Send/Datagrams.h"

namespace lineup {
inline namespace parts {

Datagrams::Datagrams(Pacer& pacer, StreamOutput& output, const StreamTimes& times)
    : mPacer(&pacer), mOutput(&output), mTimes(times) {}

bool Datagrams::Send(std::int64_t first, std::span<const std::uint8_t> packets, SendStatus& status) {
    for (; !packets.empty(); packets = packets.subspan(kTsBytes), ++first) {
        if (mWaiting.empty()) {
            mFirst = first;
        }
        mWaiting.insert(mWaiting.end(), packets.begin(), packets.begin() + kTsBytes);
        if (Modulo(first + 1, kPackets) == 0 && !Flush(status)) {
            return false;
        }
    }
    return true;
}

bool Datagrams::Flush(SendStatus& status) {
    if (mWaiting.empty()) {
        return true;
    }
    if (!mPacer->Wait(mTimes.NsOf(mFirst), mTimes.NsOf(kPackets), status)) {
        mWaiting.clear();
        return false;
    }
    const StreamMoment moment = {.datagram = FloorDivided(mFirst, kPackets),
                                 .timestamp = FloorDivided(mTimes.PcrOf(mFirst), kPcrHz / kPtsHz)};
    if (!mOutput->Write(mWaiting, moment)) {
        ++status.lostDatagrams;
    }
    ++status.datagrams;
    status.bytes += static_cast<std::int64_t>(mWaiting.size());
    mWaiting.clear();
    return true;
}

}  // namespace parts
}  // namespace lineup
