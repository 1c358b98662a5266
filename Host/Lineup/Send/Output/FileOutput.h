#pragma once

#include "Host/Lineup/Send/Output/StreamOutput.h"

#include <filesystem>
#include <string>

namespace lineup {
inline namespace parts {

/// A file, which others may read as it grows, or a pipe.
class LINEUP_API FileOutput final : public StreamOutput {
public:
    /// Throws UsageError when the file exists and may not be replaced, and Error when it cannot be opened.
    explicit FileOutput(const SendSettings& settings);
    ~FileOutput() override;

    [[nodiscard]] bool Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) override;

private:
    std::string mName;
    int mFile = -1;
    bool mOwned = true;
};

}  // namespace parts
}  // namespace lineup
