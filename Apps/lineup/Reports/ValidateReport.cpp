#include "Apps/lineup/Reports/ValidateReport.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cctype>

namespace cli {

namespace {

using lineup::validation::Outcome;
using lineup::validation::Promise;
using nlohmann::ordered_json;

constexpr std::array kOutcomes = {Outcome::kPassed,  Outcome::kWarning, Outcome::kFailed,
                                  Outcome::kSkipped, Outcome::kCrashed, Outcome::kTimedOut};

std::size_t LongestId() {
    return std::ranges::max(lineup::validation::Promises(), {},
                            [](const Promise& promise) { return promise.id.size(); })
        .id.size();
}

// Faults stand out in the table.
std::string Shown(Outcome outcome) {
    std::string name(OutcomeName(outcome));
    if (IsFault(outcome)) {
        std::ranges::transform(name, name.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    }
    return name;
}

std::ptrdiff_t Count(const ValidationReport& report, Outcome outcome) {
    return std::ranges::count(report.results, outcome, [](const PromiseResult& r) { return r.finding.outcome; });
}

// What a bundle says of itself may be no text at all.
std::string Dump(const ordered_json& json) {
    return json.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

std::string InQuotes(const std::string& argument) {
    std::string quoted = "'";
    for (const char character : argument) {
        quoted += character == '\'' ? "'\\''" : std::string(1, character);
    }
    return quoted + "'";
}

}  // namespace

bool ValidationReport::Passed() const {
    return !results.empty() &&
           std::ranges::none_of(results, [](const PromiseResult& r) { return IsFault(r.finding.outcome); });
}

std::string ListText() {
    std::string text;
    for (const Promise& promise : lineup::validation::Promises()) {
        text += fmt::format("{:<{}}  {}\n", promise.id, LongestId(), promise.text);
    }
    return text;
}

std::string ListJson() {
    ordered_json list = ordered_json::array();
    for (const Promise& promise : lineup::validation::Promises()) {
        list.push_back({{"id", promise.id}, {"promise", promise.text}});
    }
    return Dump(list);
}

std::string ResultText(const ValidationReport& report, const PromiseResult& result) {
    const lineup::validation::Finding& finding = result.finding;
    std::string text = fmt::format("{:<9}  {:<{}}  {}\n", Shown(finding.outcome), result.promise->id, LongestId(),
                                   result.promise->text);
    if (!finding.text.empty()) {
        text += fmt::format("{:<9}  -> {}\n", "", finding.text);
    }
    if (IsFault(finding.outcome)) {
        text += fmt::format("{:<9}     again: lineup validate {} --only {} --seed {}\n", "", InQuotes(report.bundle),
                            result.promise->id, report.seed);
    }
    return text;
}

std::string TallyText(const ValidationReport& report) {
    std::string text;
    for (const Outcome outcome : kOutcomes) {
        if (const auto count = Count(report, outcome); count > 0) {
            text += fmt::format("{}{} {}", text.empty() ? "" : ", ", count, OutcomeName(outcome));
        }
    }
    return text;
}

std::string ReportJson(const ValidationReport& report) {
    ordered_json checks = ordered_json::array();
    for (const PromiseResult& result : report.results) {
        checks.push_back({{"id", result.promise->id},
                          {"promise", result.promise->text},
                          {"outcome", OutcomeName(result.finding.outcome)},
                          {"text", result.finding.text},
                          {"milliseconds", result.milliseconds}});
    }
    ordered_json tally;
    for (const Outcome outcome : kOutcomes) {
        tally[std::string(OutcomeName(outcome))] = Count(report, outcome);
    }
    return Dump({{"bundle", report.bundle},
                 {"seed", report.seed},
                 {"passed", report.Passed()},
                 {"tally", tally},
                 {"checks", checks}});
}

}  // namespace cli
