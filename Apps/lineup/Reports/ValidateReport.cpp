#include "Apps/lineup/Reports/ValidateReport.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cctype>

namespace cli {

namespace {

using lineup::validation::Outcome;
using lineup::validation::PendingRequest;
using lineup::validation::Promise;
using lineup::validation::PromiseSet;
using nlohmann::ordered_json;

struct Set {
    PromiseSet set;
    std::string_view whose;
};

constexpr std::array kSets = {
    Set{PromiseSet::Interface, "what every bundle promises"},
    Set{PromiseSet::Clip, "what a bundle promises that says it is Bars and Tone, or with --clip"}};

constexpr std::array kOutcomes = {Outcome::Passed,  Outcome::Warning, Outcome::Failed,
                                  Outcome::Skipped, Outcome::Crashed, Outcome::TimedOut};

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

// What a bundle says of itself need not be text.
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

ordered_json ResultJson(const PromiseResult& result) {
    ordered_json pending = ordered_json::array();
    for (const PendingRequest& request : result.finding.pending) {
        pending.push_back({{"selector", request.selector ? ordered_json(*request.selector) : ordered_json()},
                           {"text", request.text}});
    }
    return {{"id", result.promise->id},           {"set", PromiseSetName(result.promise->set)},
            {"promise", result.promise->text},    {"outcome", OutcomeName(result.finding.outcome)},
            {"text", result.finding.text},        {"requests", pending},
            {"milliseconds", result.milliseconds}};
}

}  // namespace

bool ValidationReport::Passed() const {
    return !results.empty() &&
           std::ranges::none_of(results, [](const PromiseResult& r) { return IsFault(r.finding.outcome); });
}

std::string ListText() {
    std::string text;
    for (const Set& set : kSets) {
        text += fmt::format("{}{}: {}\n", text.empty() ? "" : "\n", PromiseSetName(set.set), set.whose);
        for (const Promise& promise : lineup::validation::Promises()) {
            if (promise.set == set.set) {
                text += fmt::format("  {:<{}}  {}\n", promise.id, LongestId(), promise.text);
            }
        }
    }
    return text;
}

std::string ListJson() {
    ordered_json list = ordered_json::array();
    for (const Promise& promise : lineup::validation::Promises()) {
        list.push_back({{"id", promise.id}, {"set", PromiseSetName(promise.set)}, {"promise", promise.text}});
    }
    return Dump(list);
}

std::string HeaderText(const ValidationReport& report) {
    return fmt::format("{}\npromises {}\nseed {}\n\n", report.bundle,
                       report.isBarsAndTone ? "the interface and the clip of Bars and Tone" : "the interface",
                       report.seed);
}

std::string ResultText(const ValidationReport& report, const PromiseResult& result) {
    const lineup::validation::Finding& finding = result.finding;
    std::string text = fmt::format("{:<9}  {:<{}}  {}\n", Shown(finding.outcome), result.promise->id, LongestId(),
                                   result.promise->text);
    if (!finding.text.empty()) {
        text += fmt::format("{:<9}  -> {}\n", "", finding.text);
    }
    if (IsFault(finding.outcome)) {
        text += fmt::format("{:<9}     again: lineup validate {} --only {} --seed {}{}\n", "", InQuotes(report.bundle),
                            result.promise->id, report.seed, report.askedForClip ? " --clip" : "");
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
        checks.push_back(ResultJson(result));
    }
    ordered_json tally;
    for (const Outcome outcome : kOutcomes) {
        tally[std::string(OutcomeName(outcome))] = Count(report, outcome);
    }
    return Dump({{"bundle", report.bundle},
                 {"isBarsAndTone", report.isBarsAndTone},
                 {"seed", report.seed},
                 {"passed", report.Passed()},
                 {"tally", tally},
                 {"checks", checks}});
}

}  // namespace cli
