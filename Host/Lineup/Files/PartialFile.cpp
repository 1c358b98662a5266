#include "Host/Lineup/Files/PartialFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace lineup {
inline namespace parts {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMark = ".lineup-";
constexpr std::string_view kEnding = ".partial";
constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::size_t kNumLetters = 6;
constexpr int kMostTries = 100;

// File systems take names of 255 bytes; what surrounds NAME in the partial file's name is 23 of them.
constexpr std::size_t kLongestName = 224;

std::string RandomLetters() {
    std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, kLetters.size() - 1);
    std::string letters(kNumLetters, ' ');
    std::ranges::generate(letters, [&] { return kLetters[pick(source)]; });
    return letters;
}

bool IsPartialName(std::string_view name) {
    constexpr std::size_t kTail = kMark.size() + kNumLetters + kEnding.size();
    if (name.size() <= kTail || !name.starts_with('.') || !name.ends_with(kEnding)) {
        return false;
    }
    name.remove_prefix(name.size() - kTail);
    return name.starts_with(kMark) &&
           name.substr(kMark.size(), kNumLetters).find_first_not_of(kLetters) == std::string_view::npos;
}

bool IsSameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

void RemoveIfAbandoned(const fs::path& file) {
    const int descriptor = open(file.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    struct stat opened {};
    struct stat named {};
    // The name is looked at again under the lock: its file may have got its proper name meanwhile.
    if (fstat(descriptor, &opened) == 0 && S_ISREG(opened.st_mode) && opened.st_uid == geteuid() &&
        flock(descriptor, LOCK_EX | LOCK_NB) == 0 && lstat(file.c_str(), &named) == 0 && IsSameFile(opened, named)) {
        unlink(file.c_str());
    }
    close(descriptor);
}

/// Locks a file just made. False when it was taken for abandoned and removed before it was locked.
bool Lock(int descriptor) {
    while (flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
    struct stat status {};
    return fstat(descriptor, &status) != 0 || status.st_nlink != 0;
}

/// Renames unless `to` exists; an errno value, or 0.
int RenameToNewName(const fs::path& from, const fs::path& to) {
#ifdef RENAME_NOREPLACE
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
#endif
    // File systems that cannot rename so can mostly link, which never replaces either.
    if (link(from.c_str(), to.c_str()) == 0) {
        unlink(from.c_str());
        return 0;
    }
    if (errno == EEXIST) {
        return EEXIST;
    }
    if (access(to.c_str(), F_OK) == 0) {
        return EEXIST;
    }
    return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

}  // namespace

PartialFile::~PartialFile() {
    // Removed before it is closed: another run must not find it unlocked.
    if (!mPath.empty()) {
        unlink(mPath.c_str());
    }
    if (mDescriptor >= 0) {
        close(mDescriptor);
    }
}

int PartialFile::OpenNamed(const fs::path& partial) {
    mDescriptor = mUnfinished.Open(partial.string());
    if (mDescriptor < 0) {
        return errno;
    }
    if (!Lock(mDescriptor)) {
        mUnfinished.Forget();
        close(std::exchange(mDescriptor, -1));
        return EEXIST;
    }
    mPath = partial;
    return 0;
}

int PartialFile::Open(const fs::path& target) {
    const std::string name = target.filename().string().substr(0, kLongestName);
    int error = EEXIST;
    for (int i = 0; i < kMostTries && error == EEXIST; ++i) {
        error = OpenNamed(target.parent_path() / fmt::format(".{}{}{}{}", name, kMark, RandomLetters(), kEnding));
    }
    return error;
}

int PartialFile::Rename(const fs::path& target, bool replace) {
    int error = 0;
    if (!replace) {
        error = RenameToNewName(mPath, target);
    } else if (std::rename(mPath.c_str(), target.c_str()) != 0) {
        error = errno;
    }
    if (error == 0) {
        mUnfinished.Forget();
        mPath.clear();
    }
    return error;
}

int PartialFile::Close() noexcept {
    return close(std::exchange(mDescriptor, -1)) == 0 ? 0 : errno;
}

void RemoveAbandonedFiles(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (IsPartialName(entry->path().filename().string())) {
            RemoveIfAbandoned(entry->path());
        }
    }
}

}  // namespace parts
}  // namespace lineup
