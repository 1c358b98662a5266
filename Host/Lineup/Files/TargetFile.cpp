#include "Host/Lineup/Files/TargetFile.h"

#include <lineup/Error.h>
#include <lineup/UsageError.h>

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <system_error>
#include <unistd.h>

namespace lineup {
inline namespace parts {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissions = 0777;

std::string Describe(int error) {
    return std::generic_category().message(error);
}

[[noreturn]] void ThrowExists(const fs::path& target) {
    throw UsageError("output", target.string(), "exists already; choose another name, or allow it to be overwritten");
}

std::string_view KindOf(fs::file_type type) {
    switch (type) {
        case fs::file_type::directory:
            return "a folder";
        case fs::file_type::fifo:
            return "a pipe";
        case fs::file_type::socket:
            return "a socket";
        case fs::file_type::not_found:
            return "a link that leads nowhere";
        default:
            return "a device";
    }
}

/// `link` is what is there under the target's own name.
void RequireReplaceable(const fs::path& target, fs::file_status link, bool overwrite) {
    std::error_code error;
    const fs::file_status status = fs::is_symlink(link) ? fs::status(target, error) : link;
    if (error && status.type() != fs::file_type::not_found) {
        throw Error(fmt::format("cannot replace {}: {}", target.string(), error.message()));
    }
    if (!fs::is_regular_file(status)) {
        throw Error(fmt::format("cannot write {}: it is {}, not a file that can be replaced", target.string(),
                                KindOf(status.type())));
    }
    if (!overwrite) {
        ThrowExists(target);
    }
    // Renaming would do away with a file that its owner has protected against writing.
    if (faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
        throw Error(fmt::format("cannot replace {}, which may not be written: {}", target.string(), Describe(errno)));
    }
}

fs::path Canonical(const fs::path& link) {
    std::error_code error;
    fs::path target = fs::canonical(link, error);
    if (error) {
        throw Error(fmt::format("cannot replace {}: {}", link.string(), error.message()));
    }
    return target;
}

fs::path FolderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

/// Waits until a file, or a folder's list of names, is on the disk. 0, or an errno value.
int Sync(int descriptor) {
    // EINVAL: what cannot be waited for on this file system.
    return fsync(descriptor) == 0 || errno == EINVAL ? 0 : errno;
}

int SyncFolder(const fs::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return 0;  // a folder that may be written but not read cannot be waited for
    }
    const int error = Sync(descriptor);
    close(descriptor);
    return error;
}

// The hidden file's own name is cut to what file systems take.
void RequireShortName(const fs::path& target) {
    const long longest = pathconf(FolderOf(target).c_str(), _PC_NAME_MAX);
    if (const std::size_t length = target.filename().native().size();
        longest > 0 && length > static_cast<std::size_t>(longest)) {
        throw Error(fmt::format("cannot open {} for writing: {}: {} bytes, and {} are the most", target.string(),
                                Describe(ENAMETOOLONG), length, longest));
    }
}

}  // namespace

TargetFile::TargetFile(const fs::path& target, bool overwrite)
    : mGiven(target), mTarget(target), mOverwrite(overwrite) {
    if (!target.has_filename()) {
        throw UsageError("output", target.string(), "must end in the name of a file");
    }
    RequireShortName(target);
    std::error_code error;
    const fs::file_status link = fs::symlink_status(target, error);
    if (!fs::status_known(link)) {
        throw Error(fmt::format("cannot open {} for writing: {}", target.string(), error.message()));
    }
    if (fs::exists(link)) {
        RequireReplaceable(target, link, overwrite);
        if (fs::is_symlink(link)) {
            mTarget = Canonical(target);
        }
    }
    RemoveAbandonedFiles(FolderOf(mTarget));
    if (const int failure = mPartial.Open(mTarget); failure != 0) {
        throw Error(fmt::format("cannot open {} for writing: {}", mGiven.string(), Describe(failure)));
    }
}

TargetFile::TargetFile(const fs::path& name, int pipe) : mGiven(name), mTarget(name), mOverwrite(true), mPipe(pipe) {}

bool TargetFile::Fail() noexcept {
    if (mErrno == 0) {
        mErrno = errno;
    }
    return false;
}

bool TargetFile::Write(std::span<const std::uint8_t> bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t written = write(Descriptor(), bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) {
                continue;
            }
            return Fail();
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        mPosition += written;
        mSize = std::max(mSize, mPosition);
    }
    return true;
}

bool TargetFile::Seek(std::int64_t position) noexcept {
    if (mPipe && position == mPosition) {
        return true;
    }
    if (lseek(Descriptor(), position, SEEK_SET) < 0) {
        return Fail();
    }
    mPosition = position;
    return true;
}

void TargetFile::RequireRoom(std::int64_t bytes) const {
    struct statvfs disk {};
    if (mPipe || fstatvfs(mPartial.Descriptor(), &disk) != 0) {
        return;  // writing will tell
    }
    const auto blocks = static_cast<std::uint64_t>(bytes) / std::max<std::uint64_t>(disk.f_frsize, 1);
    if (blocks > disk.f_bavail) {
        throw Error(fmt::format("cannot write {}: {}: it takes {} bytes, and there is room for {}", mGiven.string(),
                                Describe(ENOSPC), bytes, disk.f_bavail * disk.f_frsize));
    }
}

void TargetFile::ThrowIfFailed() const {
    if (mErrno != 0) {
        throw Error(fmt::format("cannot write {}: {}", mGiven.string(), Describe(mErrno)));
    }
}

// What cannot be kept is not worth losing the file for.
void TargetFile::KeepPermissions() noexcept {
    struct stat old {};
    if (mOverwrite && stat(mTarget.c_str(), &old) == 0) {
        [[maybe_unused]] const int owner = fchown(mPartial.Descriptor(), old.st_uid, old.st_gid);
        [[maybe_unused]] const int mode = fchmod(mPartial.Descriptor(), old.st_mode & kPermissions);
    }
}

void TargetFile::Commit(Disk disk) {
    ThrowIfFailed();
    if (mPipe) {
        return;
    }
    KeepPermissions();
    const bool wait = disk == Disk::Wait;
    mErrno = wait ? Sync(mPartial.Descriptor()) : 0;
    ThrowIfFailed();

    const int error = mPartial.Rename(mTarget, mOverwrite);
    if (error == EEXIST) {
        ThrowExists(mGiven);
    }
    if (error != 0) {
        throw Error(fmt::format("cannot give {} its name: {}", mGiven.string(), Describe(error)));
    }
    mErrno = wait ? SyncFolder(FolderOf(mTarget)) : 0;
    if (const int failure = mPartial.Close(); mErrno == 0) {
        mErrno = failure;
    }
    ThrowIfFailed();
}

void WriteWhole(const fs::path& target, std::span<const std::uint8_t> bytes, bool overwrite) {
    TargetFile file(target, overwrite);
    file.Write(bytes);
    file.Commit();
}

}  // namespace parts
}  // namespace lineup
