#pragma once

#include <lineup/Api.h>
#include <lineup/Disk.h>
#include "Host/Lineup/Files/PartialFile.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>

namespace lineup {
inline namespace parts {

/// A file that appears under its name only when it is whole and on the disk. What is written goes to a
/// hidden file beside it, ".NAME.lineup-XXXXXX.partial"; Commit gives it its name, and without Commit the
/// destructor removes it. Such files that killed programs left in the folder are removed on the way.
///
/// A target that is a symbolic link is followed: the link stays, and the file that it leads to is replaced.
/// The replaced file's permissions stay.
class LINEUP_API TargetFile {
public:
    /// Throws UsageError (option "output") when the target exists and `overwrite` is false, or names no file; Error
    /// when it is
    /// there and is not a regular file or may not be written, when it is a link that leads nowhere, or when
    /// nothing can be written in its folder.
    TargetFile(const std::filesystem::path& target, bool overwrite);

    /// A pipe, which `name` names in errors, written from front to back. Commit leaves it open.
    TargetFile(const std::filesystem::path& name, int pipe);
    ~TargetFile() = default;
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    /// The name the file will have, as it was given.
    [[nodiscard]] const std::filesystem::path& Target() const noexcept { return mGiven; }

    /// Writes all of `bytes` at the current position. False when that failed; Errno() says why.
    bool Write(std::span<const std::uint8_t> bytes) noexcept;

    /// Moves to byte `position` from the start. False when that failed.
    bool Seek(std::int64_t position) noexcept;

    /// Throws Error when `bytes` more are known not to fit on the disk.
    void RequireRoom(std::int64_t bytes) const;

    [[nodiscard]] std::int64_t Position() const noexcept { return mPosition; }

    /// Bytes in the file so far.
    [[nodiscard]] std::int64_t Size() const noexcept { return mSize; }

    /// The first failure of Write or Seek as an errno value, or 0.
    [[nodiscard]] int Errno() const noexcept { return mErrno; }

    /// Throws Error when a Write or a Seek has failed.
    void ThrowIfFailed() const;

    /// Puts the file on the disk, gives it its name and closes it; with Disk::DoNotWait the system puts it on
    /// the disk later, and a crash of the machine may lose it. Throws Error when anything written was
    /// lost; UsageError when a file of that name has appeared meanwhile and may not be replaced. Call once,
    /// last.
    void Commit(Disk disk = Disk::Wait);

    /// Whether any place of it can be written at any time.
    [[nodiscard]] bool CanSeek() const noexcept { return !mPipe; }

private:
    [[nodiscard]] int Descriptor() const noexcept { return mPipe.value_or(mPartial.Descriptor()); }
    bool Fail() noexcept;
    void KeepPermissions() noexcept;

    std::filesystem::path mGiven;
    std::filesystem::path mTarget;
    bool mOverwrite;
    PartialFile mPartial;
    std::optional<int> mPipe;
    int mErrno = 0;
    std::int64_t mPosition = 0;
    std::int64_t mSize = 0;
};

/// Makes `target` a file of `bytes`. Throws what TargetFile throws.
LINEUP_API void WriteWhole(const std::filesystem::path& target, std::span<const std::uint8_t> bytes, bool overwrite);

}  // namespace parts
}  // namespace lineup
