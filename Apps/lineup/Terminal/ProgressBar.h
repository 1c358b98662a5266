#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace cli {

/// A bar on standard error that shows how far long work is and how long it will take. It is drawn only
/// when it is wanted and standard error is a terminal, and wiped when the work ends.
class ProgressBar {
public:
    ProgressBar(std::string label, bool wanted);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// `done` of `total` steps are behind us; total is above 0. Draws at most ten times a second.
    void Show(std::int64_t done, std::int64_t total);

private:
    using Clock = std::chrono::steady_clock;

    std::string mLabel;
    bool mShown;
    Clock::time_point mStart;
    Clock::time_point mNextDrawing;
};

/// One line of `width` columns: label, bar, percent, and the time left once it can be told.
[[nodiscard]] std::string FormatProgress(const std::string& label, double fraction, double elapsedSeconds, int width);

}  // namespace cli
