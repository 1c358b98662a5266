#include "Apps/lineup/Terminal/StatusLine.h"

#include <fmt/format.h>

#include <cstdio>
#include <unistd.h>

namespace cli {

StatusLine::StatusLine(bool wanted) : mShown(wanted && isatty(STDERR_FILENO) != 0) {}

StatusLine::~StatusLine() {
    Clear();
}

// A terminal that has gone away ends no stream.
void StatusLine::Show(const std::string& text) const {
    if (mShown) {
        std::fputs(fmt::format("\r{}\033[K", text).c_str(), stderr);
        std::fflush(stderr);
    }
}

void StatusLine::Clear() const {
    if (mShown) {
        std::fputs("\r\033[K", stderr);
    }
}

}  // namespace cli
