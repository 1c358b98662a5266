#pragma once

#include "Host/Lineup/Send/Output/StreamOutput.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace lineup {
inline namespace parts {

/// A file, which others may read as it grows, or a pipe. Where a file cannot take the whole of a stream that has a
/// length, it is removed; of one that goes on until somebody ends it, what it took in whole writes is kept.
class LINEUP_API FileOutput final : public StreamOutput {
public:
    /// Throws UsageError when the file exists and may not be replaced, and Error when it cannot be opened.
    explicit FileOutput(const SendSettings& settings);
    ~FileOutput() override;
    FileOutput(const FileOutput&) = delete;
    FileOutput& operator=(const FileOutput&) = delete;

    [[nodiscard]] bool Write(std::span<const std::uint8_t> bytes, const StreamMoment& moment) override;

private:
    [[noreturn]] void GiveUp(int error);
    void Remove() noexcept;

    std::string mName;
    int mFile = -1;
    bool mOwned = true;
    bool mEndsByItself = false;
    std::filesystem::path mPath;  // of a file that is no pipe with a name, nor the like; else empty
    std::int64_t mKept = 0;       // bytes of whole writes
};

}  // namespace parts
}  // namespace lineup
