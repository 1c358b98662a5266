#include "Host/Lineup/Send/Output/FileOutput.h"

#include <lineup/Error.h>
#include <lineup/UsageError.h>

#include <fmt/format.h>

#include <cerrno>
#include <fcntl.h>
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

}  // namespace

FileOutput::FileOutput(const SendSettings& settings)
    : mName(settings.target),
      mFile(settings.pipe ? *settings.pipe : OpenStreamFile(settings)),
      mOwned(!settings.pipe) {}

FileOutput::~FileOutput() {
    if (mOwned) {
        close(mFile);
    }
}

bool FileOutput::Write(std::span<const std::uint8_t> bytes, const StreamMoment& /*moment*/) {
    while (!bytes.empty()) {
        const ssize_t written = write(mFile, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            throw Error(fmt::format("cannot write {}: {}", mName, std::generic_category().message(errno)));
        }
    }
    return true;
}

}  // namespace parts
}  // namespace lineup
