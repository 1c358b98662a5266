#include "Host/Lineup/Send/Output/RtpOutput.h"

#include <utility>

namespace lineup {
inline namespace parts {

namespace {

// The lowest bytes of a number, the highest of them first.
void PutNetworkOrder(std::vector<std::uint8_t>& bytes, std::uint64_t number, unsigned count) {
    while (count-- > 0) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * count)));
    }
}

}  // namespace

RtpOutput::RtpOutput(std::unique_ptr<StreamOutput> output, RtpPayload payload)
    : mOutput(std::move(output)), mPayload(payload) {}

bool RtpOutput::Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) {
    constexpr std::uint8_t kVersion2 = 0x80;
    mDatagram.assign({kVersion2, static_cast<std::uint8_t>(mPayload)});
    PutNetworkOrder(mDatagram, static_cast<std::uint64_t>(moment.datagram), 2);
    PutNetworkOrder(mDatagram, static_cast<std::uint64_t>(moment.timestamp), 4);
    PutNetworkOrder(mDatagram, kSource, 4);
    mDatagram.insert(mDatagram.end(), bytes.begin(), bytes.end());
    return mOutput->Write(mDatagram, moment);
}

}  // namespace parts
}  // namespace lineup
