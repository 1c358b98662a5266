#include "Host/Lineup/Export/TargetFile.h"

#include "Host/Lineup/Error.h"
#include "Host/Lineup/Export/UsageError.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <string>
#include <system_error>
#include <unistd.h>

namespace lineup {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kReadWriteForAll = 0666;  // less what the process's umask takes away
constexpr int kMostTries = 100;

// File systems take names of 255 bytes; what surrounds NAME in the partial file's name is 23 of them.
constexpr std::size_t kLongestName = 224;

std::string Describe(int error) {
    return std::generic_category().message(error);
}

[[noreturn]] void ThrowExists(const fs::path& target) {
    throw UsageError("output", target.string(), "exists already; choose another name, or allow it to be overwritten");
}

std::string RandomLetters() {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, kLetters.size() - 1);
    std::string letters(6, ' ');
    std::ranges::generate(letters, [&] { return kLetters[pick(source)]; });
    return letters;
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

TargetFile::TargetFile(const fs::path& target, bool overwrite)
    : mGiven(target), mTarget(target), mOverwrite(overwrite) {
    std::error_code error;
    const fs::file_status link = fs::symlink_status(target, error);
    if (fs::exists(link)) {
        if (!fs::is_regular_file(fs::status(target, error))) {
            throw UsageError("output", target.string(), "is there already and is not a file that can be replaced");
        }
        if (!overwrite) {
            ThrowExists(target);
        }
        if (fs::is_symlink(link)) {
            mTarget = fs::canonical(target);
        }
    }
    Create();
}

TargetFile::~TargetFile() {
    if (mDescriptor >= 0) {
        close(mDescriptor);
    }
    if (!mPartial.empty()) {
        unlink(mPartial.c_str());
    }
}

void TargetFile::Create() {
    const std::string name = mTarget.filename().string().substr(0, kLongestName);
    for (int i = 0; i < kMostTries; ++i) {
        const fs::path partial = mTarget.parent_path() / fmt::format(".{}.lineup-{}.partial", name, RandomLetters());
        mDescriptor = open(partial.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kReadWriteForAll);
        if (mDescriptor >= 0) {
            mPartial = partial;
            return;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    throw Error(fmt::format("cannot open {} for writing: {}", mGiven.string(), Describe(errno)));
}

bool TargetFile::Fail() noexcept {
    if (mErrno == 0) {
        mErrno = errno;
    }
    return false;
}

bool TargetFile::Write(std::span<const std::uint8_t> bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t written = write(mDescriptor, bytes.data(), bytes.size());
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
    if (lseek(mDescriptor, position, SEEK_SET) < 0) {
        return Fail();
    }
    mPosition = position;
    return true;
}

void TargetFile::ThrowIfFailed() const {
    if (mErrno != 0) {
        throw Error(fmt::format("cannot write {}: {}", mGiven.string(), Describe(mErrno)));
    }
}

void TargetFile::Commit() {
    ThrowIfFailed();
    const int descriptor = mDescriptor;
    mDescriptor = -1;
    if (close(descriptor) != 0) {
        Fail();
        ThrowIfFailed();
    }

    int error = 0;
    if (!mOverwrite) {
        error = RenameToNewName(mPartial, mTarget);
    } else if (std::rename(mPartial.c_str(), mTarget.c_str()) != 0) {
        error = errno;
    }
    if (error == EEXIST) {
        ThrowExists(mGiven);
    }
    if (error != 0) {
        throw Error(fmt::format("cannot give {} its name: {}", mGiven.string(), Describe(error)));
    }
    mPartial.clear();
}

}  // namespace lineup
