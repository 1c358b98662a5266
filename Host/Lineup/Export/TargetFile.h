#pragma once

#include "Host/Lineup/Api.h"

#include <cstdint>
#include <filesystem>
#include <span>

namespace lineup {

/// A file that appears under its name only when it is whole. What is written goes to a hidden file
/// beside it, ".NAME.lineup-XXXXXX.partial"; Commit gives it its name, and without Commit the
/// destructor removes it. A target that is a symbolic link is followed.
class LINEUP_API TargetFile {
public:
    /// Throws UsageError (option "output") when the target exists and `overwrite` is false, or is not a
    /// regular file; Error when nothing can be written in its folder.
    TargetFile(const std::filesystem::path& target, bool overwrite);
    ~TargetFile();
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    /// The name the file will have, as it was given.
    [[nodiscard]] const std::filesystem::path& Target() const noexcept { return mGiven; }

    /// Writes all of `bytes` at the current position. False when that failed; Errno() says why.
    bool Write(std::span<const std::uint8_t> bytes) noexcept;

    /// Moves to byte `position` from the start. False when that failed.
    bool Seek(std::int64_t position) noexcept;

    [[nodiscard]] std::int64_t Position() const noexcept { return mPosition; }

    /// Bytes in the file so far.
    [[nodiscard]] std::int64_t Size() const noexcept { return mSize; }

    /// The first failure of Write or Seek as an errno value, or 0.
    [[nodiscard]] int Errno() const noexcept { return mErrno; }

    /// Throws Error when a Write or a Seek has failed.
    void ThrowIfFailed() const;

    /// Closes the file and gives it its name. Throws Error when anything written was lost; UsageError when
    /// a file of that name has appeared meanwhile and may not be replaced. Call once, last.
    void Commit();

private:
    void Create();
    bool Fail() noexcept;

    std::filesystem::path mGiven;
    std::filesystem::path mTarget;
    std::filesystem::path mPartial;
    bool mOverwrite;
    int mDescriptor = -1;
    int mErrno = 0;
    std::int64_t mPosition = 0;
    std::int64_t mSize = 0;
};

}  // namespace lineup
