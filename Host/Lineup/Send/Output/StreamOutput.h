#pragma once

#include <lineup/Api.h>
#include <lineup/SendSettings.h>

#include <cstdint>
#include <memory>
#include <span>

namespace lineup {
inline namespace parts {

/// Where a stream goes.
class LINEUP_API StreamOutput {
public:
    StreamOutput() = default;
    virtual ~StreamOutput();
    StreamOutput(const StreamOutput&) = delete;
    StreamOutput& operator=(const StreamOutput&) = delete;

    /// Sends a datagram's worth of the stream; false when it is lost, and the stream goes on. Throws Error when nothing
    /// takes it any more.
    [[nodiscard]] virtual bool Write(std::span<const std::uint8_t> bytes) = 0;
};

/// Opens what the settings' target names. Throws UsageError for one that cannot be, and Error.
[[nodiscard]] LINEUP_API std::unique_ptr<StreamOutput> OpenOutput(const SendSettings& settings);

}  // namespace parts
}  // namespace lineup
