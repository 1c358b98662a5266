#include "Apps/lineup/Terminal/StandardStreams.h"

#include <lineup/Error.h>

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace cli {

void FillStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // The lowest free number is this stream's. Opened for the wrong direction, so that using it fails.
            [[maybe_unused]] const int filled = open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

void FinishStandardOutput() {
    errno = 0;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        // Without a number when it was printing that failed, earlier: an empty line fails for the same reason.
        const bool isKnown = errno != 0 || write(STDOUT_FILENO, "\n", 1) < 0;
        const int error = isKnown ? errno : EIO;
        throw lineup::Error(fmt::format("cannot write to standard output: {}", std::generic_category().message(error)));
    }
}

}  // namespace cli
