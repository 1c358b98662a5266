#include "Apps/lineup/Terminal/ProgressBar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace cli {

namespace {

constexpr auto kRedrawInterval = std::chrono::milliseconds(100);
constexpr int kDefaultColumns = 80;
constexpr int kWidestBar = 40;

int TerminalColumns() {
    winsize size{};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kDefaultColumns;
}

std::string FormatTimeLeft(double fraction, double elapsedSeconds) {
    if (fraction <= 0 || elapsedSeconds < 1) {
        return {};
    }
    const auto seconds = std::llround(elapsedSeconds * (1 - fraction) / fraction);
    return fmt::format("  {}:{:02} left", seconds / 60, seconds % 60);
}

}  // namespace

std::string FormatProgress(const std::string& label, double fraction, double elapsedSeconds, int width) {
    const std::string tail =
        fmt::format(" {:3.0f} %{}", std::floor(fraction * 100), FormatTimeLeft(fraction, elapsedSeconds));
    const int room = width - static_cast<int>(label.size() + tail.size()) - 4;
    const int columns = std::clamp(room, 0, kWidestBar);
    const int filled = static_cast<int>(fraction * columns);
    return fmt::format("{} [{:#<{}}{:.<{}}]{}", label, "", filled, "", columns - filled, tail);
}

ProgressBar::ProgressBar(std::string label, bool wanted)
    : mLabel(std::move(label)),
      mShown(wanted && isatty(STDERR_FILENO) != 0),
      mStart(Clock::now()),
      mNextDrawing(mStart) {}

ProgressBar::~ProgressBar() {
    if (mShown) {
        std::fputs("\r\033[K", stderr);
    }
}

void ProgressBar::Show(std::int64_t done, std::int64_t total) {
    const auto now = Clock::now();
    if (!mShown || (now < mNextDrawing && done < total)) {
        return;
    }
    mNextDrawing = now + kRedrawInterval;
    const double fraction = static_cast<double>(done) / static_cast<double>(total);
    const double elapsedSeconds = std::chrono::duration<double>(now - mStart).count();
    // A terminal that has gone away takes no export with it.
    const std::string line =
        fmt::format("\r{}\033[K", FormatProgress(mLabel, fraction, elapsedSeconds, TerminalColumns()));
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
}

}  // namespace cli
