#pragma once

#include <lineup/Validation.h>

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

/// A check that was run, and what came of it.
struct PromiseResult {
    const lineup::validation::Promise* promise = nullptr;
    lineup::validation::Finding finding;
    std::int64_t milliseconds = 0;
};

/// A validation: what was put to the test, and what came of it.
struct ValidationReport {
    std::string bundle;
    std::uint64_t seed = 0;
    bool isBarsAndTone = false;  ///< the bundle says so, or a person
    bool askedForClip = false;   ///< a person says so
    std::vector<PromiseResult> results;

    /// Something was checked, and nothing of it is a fault.
    [[nodiscard]] bool Passed() const;
};

/// The list of checks, for people and as JSON: ids and promises, set by set.
[[nodiscard]] std::string ListText();
[[nodiscard]] std::string ListJson();

/// What stands above the results: the bundle, what it promises, the seed.
[[nodiscard]] std::string HeaderText(const ValidationReport& report);

/// A line or two for one result. What a check found stands below it, and for a fault the command that
/// shows it again.
[[nodiscard]] std::string ResultText(const ValidationReport& report, const PromiseResult& result);

/// How many checks ended in which way: "36 passed, 1 failed".
[[nodiscard]] std::string TallyText(const ValidationReport& report);

/// The whole report as JSON.
[[nodiscard]] std::string ReportJson(const ValidationReport& report);

}  // namespace cli
