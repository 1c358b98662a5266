#pragma once

#include <lineup/Api.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Puts the bundle of an importer to the test: its promises, each tried by a check of its own.
namespace lineup::validation {

class Examination;

/// How a check ended.
enum class Outcome : std::uint8_t {
    Passed,
    Warning,   ///< what hosts can live with, and its author should know of
    Failed,    ///< a promise that is not kept
    Skipped,   ///< nothing to check; the text says why
    Crashed,   ///< the bundle ended the process
    TimedOut,  ///< the check did not end in time
};

/// The outcome in words: "timed out".
[[nodiscard]] LINEUP_API std::string_view OutcomeName(Outcome outcome);

/// Failed, crashed and timed out.
[[nodiscard]] LINEUP_API bool IsFault(Outcome outcome);

/// A request that a check had begun and not finished when its process ended.
struct PendingRequest {
    std::optional<std::int32_t> selector;  ///< none while the executable is loaded or unloaded
    std::string text;                      ///< "selector 25, audio of 20 samples from -5 on, ..."
};

/// What came of a check.
struct Finding {
    Outcome outcome = Outcome::Failed;
    std::string text = {};                     ///< what was found, and where; empty for a check that passed
    std::vector<PendingRequest> pending = {};  ///< one a thread; of a check that crashed or timed out
};

/// Whose promise it is.
enum class PromiseSet : std::uint8_t {
    Interface,  ///< every bundle's: it knows nothing of the clips
    Clip,       ///< of Bars and Tone: its sine, its identification sequences, its card
};

/// "interface" or "clip".
[[nodiscard]] LINEUP_API std::string_view PromiseSetName(PromiseSet set);

/// Whether the checks after one are of any use when it comes to grief.
enum class Gate : std::uint8_t {
    Open,             ///< they are
    ShutWhenAtFault,  ///< none of them can be run
    ShutWhenEnded,    ///< when it crashed or timed out they would do the same
};

/// One promise, and how it is put to the test.
struct Promise {
    std::string_view id;    ///< kebab-case; never changes
    std::string_view text;  ///< one sentence
    void (*check)(Examination& examination);
    Gate gate = Gate::Open;
    PromiseSet set = PromiseSet::Interface;
};

/// Whether a check that ended so leaves the ones after it without a chance.
[[nodiscard]] LINEUP_API bool ShutsTheGate(const Promise& promise, Outcome outcome);

/// All promises, those of the interface first, in the order they are checked in.
[[nodiscard]] LINEUP_API std::span<const Promise> Promises();

/// The promise called `id`, or null.
[[nodiscard]] LINEUP_API const Promise* FindPromise(std::string_view id);

/// What is put to the test.
struct Subject {
    std::filesystem::path bundleFolder;
    bool isBarsAndTone = false;  ///< then the promises of the interface are tried on its clips, too
};

/// Whether a bundle with this identifier, or one of these file types, says that it is Bars and Tone.
[[nodiscard]] LINEUP_API bool IsBarsAndTone(std::string_view identifier, std::span<const std::uint32_t> fileTypes);

/// The same of a bundle, which is loaded to be asked. Throws what says why it cannot be.
[[nodiscard]] LINEUP_API bool SaysItIsBarsAndTone(const std::filesystem::path& bundleFolder);

/// Checks a promise in this process. The same seed draws the same numbers. Nothing is thrown: what a check
/// throws is its finding. A bundle that crashes or never returns takes the process along.
[[nodiscard]] LINEUP_API Finding CheckPromise(const Promise& promise, const Subject& subject, std::uint64_t seed);

/// Starts a program that checks one promise and reports with ReportToParent, and waits for it, for as long
/// as `timeout`. `arguments` begin with the program. Its standard output goes to standard error, so that
/// what a bundle prints is not taken for a report. Anything but a whole report, and an end in good
/// order after it, is a fault, which names the requests that were pending. Throws Error when the program cannot be
/// started. One at a time: the calling thread waits for SIGCHLD meanwhile.
[[nodiscard]] LINEUP_API Finding RunInChild(const std::vector<std::string>& arguments,
                                            std::chrono::milliseconds timeout);

/// For the program that RunInChild starts: ends together with its parent, leaves no memory image
/// when it crashes, and lets the parent see which requests are pending. Before the first request.
LINEUP_API void PrepareChild();

/// For the same: reports, and ends the process at once, without running what the bundle left to be run.
[[noreturn]] LINEUP_API void ReportToParent(const Finding& finding);

}  // namespace lineup::validation
