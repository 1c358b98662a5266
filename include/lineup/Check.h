#pragma once

#include <lineup/Api.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

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
struct Check {
    std::string_view id;       ///< kebab-case; never changes
    std::string_view promise;  ///< one sentence
    void (*run)(Examination& examination);
    Gate gate = Gate::kOpen;
};

/// Whether a check that ended so leaves the ones after it without a chance.
[[nodiscard]] LINEUP_API bool ShutsTheGate(const Check& check, Outcome outcome);

/// All checks, in the order they are run in.
[[nodiscard]] LINEUP_API std::span<const Check> Checks();

/// The check called `id`, or null.
[[nodiscard]] LINEUP_API const Check* FindCheck(std::string_view id);

}  // namespace lineup::validation
