#pragma once

#include <lineup/SendSettings.h>
#include "Host/Lineup/Send/Output/StreamOutput.h"
#include "Host/Lineup/Send/Output/StreamUrl.h"

#include <functional>
#include <string>

namespace lineup {
inline namespace parts {

/// A socket that datagrams leave by, to one address or a group. What the network refuses is lost and said once, until
/// it takes datagrams again.
class LINEUP_API UdpOutput final : public StreamOutput {
public:
    /// Knows the options ttl, localaddr and localport. Throws UsageError for others, and Error when there is no such
    /// host, or the port or address here is taken.
    UdpOutput(const StreamUrl& url, std::function<void(const std::string&)> notice);
    ~UdpOutput() override;
    UdpOutput(const UdpOutput&) = delete;
    UdpOutput& operator=(const UdpOutput&) = delete;

    [[nodiscard]] bool Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) override;

private:
    void Say(const std::string& text) const;

    std::string mName;
    std::function<void(const std::string&)> mNotice;
    int mSocket = -1;
    int mError = 0;  // the last datagram's
};

}  // namespace parts
}  // namespace lineup
