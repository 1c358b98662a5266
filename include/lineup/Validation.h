#pragma once

#include <lineup/Api.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Puts the bundle of an importer to the test: promises of the interface, each tried by a check of its own.
namespace lineup::validation {

class Examination;

/// How a check ended.
enum class Outcome : std::uint8_t {
    kPassed,
    kWarning,   ///< what hosts can live with, and its author should know of
    kFailed,    ///< a promise that is not kept
    kSkipped,   ///< nothing to check; the text says why
    kCrashed,   ///< the bundle ended the process
    kTimedOut,  ///< the check did not end in time
};

/// The outcome in words: "timed out".
[[nodiscard]] LINEUP_API std::string_view OutcomeName(Outcome outcome);

/// Passed, warning and skipped are no faults; everything else is one.
[[nodiscard]] LINEUP_API bool IsFault(Outcome outcome);

/// What came of a check.
struct Finding {
    Outcome outcome = Outcome::kFailed;
    std::string text;  ///< what was found, and where; empty for a check that passed
};

/// Whether the checks after one are of any use when it comes to grief.
enum class Gate : std::uint8_t {
    kOpen,             ///< they are
    kShutWhenAtFault,  ///< none of them can be run
    kShutWhenEnded,    ///< when it crashed or timed out they would do the same
};

/// One promise that every bundle of the importer interface makes, and how it is put to the test.
struct Promise {
    std::string_view id;    ///< kebab-case; never changes
    std::string_view text;  ///< one sentence
    void (*check)(Examination& examination);
    Gate gate = Gate::kOpen;
};

/// Whether a check that ended so leaves the ones after it without a chance.
[[nodiscard]] LINEUP_API bool ShutsTheGate(const Promise& promise, Outcome outcome);

/// All promises, in the order they are checked in.
[[nodiscard]] LINEUP_API std::span<const Promise> Promises();

/// The promise called `id`, or null.
[[nodiscard]] LINEUP_API const Promise* FindPromise(std::string_view id);

/// Checks a promise in this process. The same seed draws the same numbers. Nothing is thrown: what a check
/// throws is its finding. A bundle that crashes or never returns takes the process along.
[[nodiscard]] LINEUP_API Finding CheckPromise(const Promise& promise, const std::filesystem::path& bundleFolder,
                                              std::uint64_t seed);

/// Starts a program that checks one promise and reports with ReportToParent, and waits for it, for as long
/// as `timeout`. `arguments` begin with the program. Its standard output goes to standard error, so that
/// what a bundle prints is not taken for a report. Anything but a whole report, and an end in good
/// order after it, is a fault. Throws Error when the program cannot be started. One at a time: the
/// calling thread waits for SIGCHLD meanwhile.
[[nodiscard]] LINEUP_API Finding RunInChild(const std::vector<std::string>& arguments,
                                            std::chrono::milliseconds timeout);

/// For the program that RunInChild starts: ends together with its parent, and leaves no memory image
/// when it crashes.
LINEUP_API void PrepareChild();

/// For the same: reports, and ends the process at once, without running what the bundle left to be run.
[[noreturn]] LINEUP_API void ReportToParent(const Finding& finding);

}  // namespace lineup::validation
