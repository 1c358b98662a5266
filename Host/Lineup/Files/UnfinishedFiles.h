#pragma once

#include <lineup/Api.h>

#include <cstddef>
#include <string>

namespace lineup {
inline namespace parts {

/// Removes every hidden file that this process is writing and lets it begin no other: for a signal
/// handler, which then ends the process. Async-signal-safe, any thread. What has its name already stays.
LINEUP_API void RemoveUnfinishedFiles() noexcept;

/// One hidden file that is being written, on the list that RemoveUnfinishedFiles goes through. The list has
/// room for 16; further ones are written all the same and are not on it.
class LINEUP_API UnfinishedFile {
public:
    UnfinishedFile() noexcept = default;
    ~UnfinishedFile() { Forget(); }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    /// Makes `path`, which must not exist, for reading and writing, and puts it on the list: no signal comes
    /// between the two. The descriptor, or -1 with errno set; EINTR when the process is about to end.
    [[nodiscard]] int Open(const std::string& path) noexcept;

    /// Takes the file off the list: it has its name, or is gone.
    void Forget() noexcept;

private:
    static constexpr std::size_t kUnlisted = static_cast<std::size_t>(-1);

    std::size_t mSlot = kUnlisted;
};

}  // namespace parts
}  // namespace lineup
