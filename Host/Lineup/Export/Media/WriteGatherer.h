#pragma once

#include "Host/Lineup/Files/TargetFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace lineup {

/// Writes a file in few large pieces, whatever pieces it is given: a muxer writes dozens of small fields around every
/// packet. Small pieces are gathered; large ones go from their own memory to the file. The file must outlive it, and
/// is written only through it.
class WriteGatherer {
public:
    explicit WriteGatherer(TargetFile& file);

    /// Writes `bytes` at the current position, now or later. False when a write has failed; Errno() of the file
    /// says why.
    bool Write(std::span<const std::uint8_t> bytes) noexcept;

    /// Moves to byte `position` from the start. False when a write or the move failed.
    bool Seek(std::int64_t position) noexcept;

    /// Writes what is gathered. False when that failed.
    bool Flush() noexcept;

    [[nodiscard]] std::int64_t Position() const noexcept;

    /// Bytes in the file so far, those gathered included.
    [[nodiscard]] std::int64_t Size() const noexcept;

    [[nodiscard]] int Errno() const noexcept { return mFile->Errno(); }

private:
    TargetFile* mFile;
    std::unique_ptr<std::uint8_t[]> mGathered;
    std::size_t mFilled = 0;
};

}  // namespace lineup
