#pragma once

#include "Host/Lineup/Send/Output/StreamOutput.h"

#include <memory>
#include <vector>

namespace lineup {
inline namespace parts {

/// One stream to several places.
class LINEUP_API FanOutput final : public StreamOutput {
public:
    explicit FanOutput(std::vector<std::unique_ptr<StreamOutput>> outputs);

    /// False when any of them loses it.
    [[nodiscard]] bool Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) override;

private:
    std::vector<std::unique_ptr<StreamOutput>> mOutputs;
};

}  // namespace parts
}  // namespace lineup
