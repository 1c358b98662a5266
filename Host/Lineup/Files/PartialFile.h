#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Files/UnfinishedFiles.h"

#include <filesystem>

namespace lineup {
inline namespace parts {

/// The hidden file ".NAME.lineup-XXXXXX.partial" beside a file NAME that is being written. It is locked
/// while its writer lives; one that is not locked was left by a writer that was killed.
class LINEUP_API PartialFile {
public:
    PartialFile() noexcept = default;
    /// Closes it, and removes it unless it has its name.
    ~PartialFile();
    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;

    /// Makes an empty one beside `target`, open for reading and writing. 0, or an errno value.
    [[nodiscard]] int Open(const std::filesystem::path& target);

    [[nodiscard]] int Descriptor() const noexcept { return mDescriptor; }

    /// Gives it the name `target`, in the same folder; a file of that name is replaced, or is EEXIST when
    /// `replace` is false. 0, or an errno value.
    [[nodiscard]] int Rename(const std::filesystem::path& target, bool replace);

    /// Closes it, once it has its name. 0, or an errno value.
    [[nodiscard]] int Close() noexcept;

private:
    int OpenNamed(const std::filesystem::path& partial);

    UnfinishedFile mUnfinished;
    std::filesystem::path mPath;
    int mDescriptor = -1;
};

/// Removes the partial files in `folder` whose writers are gone, whatever they were to be named. Leaves
/// those that are locked, belong to another user, are not regular files, or lie where files cannot be locked.
LINEUP_API void RemoveAbandonedFiles(const std::filesystem::path& folder);

}  // namespace parts
}  // namespace lineup
