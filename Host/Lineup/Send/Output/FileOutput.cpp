#include "Host/Lineup/Send/Output/FileOutput.h"

#include <lineup/Error.h>
#include <lineup/UsageError.h>

#include <fmt/format.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace lineup {
inline namespace parts {

namespace {

constexpr int kForAll = 0666;  // as the process's mask allows

int OpenStreamFile(const SendSettings& settings) {
    std::error_code ignored;
    // A pipe with a name, and the like, are there already and are not replaced.
    const bool special = std::filesystem::exists(settings.target, ignored) &&
                         !std::filesystem::is_regular_file(settings.target, ignored);
    const int flags = special ? 0 : O_CREAT | (settings.overwrite ? O_TRUNC : O_EXCL);
    const int file = open(settings.target.c_str(), O_WRONLY | O_CLOEXEC | flags, kForAll);
    if (file < 0 && errno == EEXIST) {
        throw UsageError("output", settings.target, "exists already; --overwrite replaces it");
    }
    if (file < 0) {
        throw Error(
            fmt::format("cannot open {} for writing: {}", settings.target, std::generic_category().message(errno)));
    }
    return file;
}

bool IsSameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

FileOutput::FileOutput(const SendSettings& settings)
    : mName(settings.target),
      mFile(settings.pipe ? *settings.pipe : OpenStreamFile(settings)),
      mOwned(!settings.pipe),
      mEndsByItself(settings.samples.has_value()) {
    std::error_code error;
    if (mOwned && std::filesystem::is_regular_file(mName, error)) {
        mPath = std::filesystem::canonical(mName, error);
    }
}

FileOutput::~FileOutput() {
    if (mOwned) {
        close(mFile);
    }
}

bool FileOutput::Write(std::span<const std::uint8_t> bytes, const StreamMoment& /*moment*/) {
    const auto whole = static_cast<std::int64_t>(bytes.size());
    while (!bytes.empty()) {
        const ssize_t written = write(mFile, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            GiveUp(errno);
        }
    }
    mKept += whole;
    return true;
}

void FileOutput::GiveUp(int error) {
    std::string text = fmt::format("cannot write {}: {}", mName, std::generic_category().message(error));
    if (!mPath.empty() && !mEndsByItself && mKept > 0 && ftruncate(mFile, mKept) == 0) {
        text += fmt::format("; what was sent before is kept: {} bytes", mKept);
    } else if (!mPath.empty()) {
        Remove();
    }
    throw Error(text);
}

// Not what somebody else has put in its place.
void FileOutput::Remove() noexcept {
    struct stat written {};
    struct stat named {};
    if (fstat(mFile, &written) == 0 && lstat(mPath.c_str(), &named) == 0 && IsSameFile(written, named)) {
        unlink(mPath.c_str());
    }
}

}  // namespace parts
}  // namespace lineup
