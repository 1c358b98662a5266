#pragma once

#include "Host/Lineup/Files/TargetFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

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

    /// From here on, what is written at the current position or past it is kept in memory. False when a write failed.
    bool Hold() noexcept;

    /// What is kept since Hold; may be changed.
    [[nodiscard]] std::vector<std::uint8_t>& Held() noexcept { return mHeld; }

    /// Writes what is kept in its place. False when that failed.
    bool Release() noexcept;

    [[nodiscard]] std::int64_t Position() const noexcept;

    /// Bytes in the file so far, those gathered included.
    [[nodiscard]] std::int64_t Size() const noexcept;

    [[nodiscard]] int Errno() const noexcept { return mFile->Errno(); }

private:
    bool WriteHeld(std::span<const std::uint8_t> bytes) noexcept;

    TargetFile* mFile;
    std::unique_ptr<std::uint8_t[]> mGathered;
    std::size_t mFilled = 0;
    std::vector<std::uint8_t> mHeld;
    std::optional<std::int64_t> mHeldFrom;  // empty: nothing is held back
    std::optional<std::size_t> mHeldAt;     // where in mHeld the next bytes go; empty: they go to the file
};

}  // namespace lineup
