#pragma once

#include "Host/Lineup/Send/Output/StreamOutput.h"

#include <memory>
#include <vector>

namespace lineup {
inline namespace parts {

/// Datagrams with the head of RTP (RFC 3550) in front. The source's number is the same for all senders, so that two of
/// them that send the same stream send the same bytes.
class LINEUP_API RtpOutput final : public StreamOutput {
public:
    static constexpr std::uint32_t kSource = 0x4C494E45;  // "LINE"

    RtpOutput(std::unique_ptr<StreamOutput> output, RtpPayload payload);

    [[nodiscard]] bool Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) override;

private:
    std::unique_ptr<StreamOutput> mOutput;
    RtpPayload mPayload;
    std::vector<std::uint8_t> mDatagram;
};

}  // namespace parts
}  // namespace lineup
