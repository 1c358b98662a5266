#include "Apps/lineup/Commands/ValidateCommand.h"

#include <lineup/UsageError.h>
#include <lineup/Validation.h>
#include "Apps/lineup/Options/Values.h"
#include "Apps/lineup/Reports/ValidateReport.h"

#include <CLI/Error.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace cli {

namespace {

namespace validation = lineup::validation;
using Clock = std::chrono::steady_clock;

constexpr double kLongestTimeoutSeconds = 86400;

constexpr const char* kValidateHelp =
    "Each check runs in a process of its own, so that a bundle that crashes or hangs is one finding and no more.\n"
    "Outcomes: passed, warning, failed, skipped, crashed, timed out.\n"
    "Every bundle promises the interface. A bundle that says it is Bars and Tone, by its identifier or its file type,\n"
    "promises the clip too: the tone, the identification sequences and the card.\n"
    "\n"
    "Examples:\n"
    "  lineup validate My.bundle                                all that it promises\n"
    "  lineup validate My.bundle --clip                         the clip too, whatever it says it is\n"
    "  lineup validate --list                                   what the checks are\n"
    "  lineup validate My.bundle --only audio-splits --seed 7   one of them again, with the same numbers\n"
    "  lineup validate My.bundle --json > report.json           for another program\n"
    "  gdb --args lineup validate My.bundle --only frames-drawn-whole --in-process\n"
    "\n"
    "Exit status: 0 nothing failed, crashed or timed out; 1 something did; 2 used wrongly.";

struct ValidateOptions {
    std::string bundle;
    std::vector<std::string> only;
    std::string seed;  ///< empty: one is drawn
    double timeoutSeconds = 60;
    bool clip = false;
    bool list = false;
    bool json = false;
    bool inProcess = false;
    std::string runCheck;  ///< set in the process of one check
};

std::uint64_t ChooseSeed(const std::string& text) {
    if (text.empty()) {
        return std::random_device{}();  // 32 bits are enough to type again
    }
    std::uint64_t seed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw lineup::UsageError("seed", text, "must be a whole number of 64 bits, 0 or more");
    }
    return seed;
}

const validation::Promise& RequirePromise(const std::string& id) {
    const validation::Promise* const promise = validation::FindPromise(id);
    if (promise == nullptr) {
        throw lineup::UsageError("only", id, "is not a check: lineup validate --list names them");
    }
    return *promise;
}

// What a child is asked for before the checks: a crash is the finding of the check that it comes back in.
constexpr const char* kIdentityQuestion = "is-it-bars-and-tone";

validation::Finding AskWhatItIs(const std::string& bundle) {
    try {
        const bool isBarsAndTone = validation::SaysItIsBarsAndTone(bundle);
        return {.outcome = isBarsAndTone ? validation::Outcome::Passed : validation::Outcome::Failed};
    } catch (const std::exception& error) {
        return {.outcome = validation::Outcome::Failed, .text = error.what()};
    }
}

validation::Finding RunByName(const std::string& id, const ValidateOptions& options) {
    if (id == kIdentityQuestion) {
        return AskWhatItIs(options.bundle);
    }
    return validation::CheckPromise(RequirePromise(id), {.bundleFolder = options.bundle, .isBarsAndTone = options.clip},
                                    ChooseSeed(options.seed));
}

// Of the options the bundle, whether it is the clip, and the time count.
validation::Finding Run(const std::string& id, const ValidateOptions& options, std::uint64_t seed) {
    if (options.inProcess) {
        ValidateOptions seeded = options;
        seeded.seed = std::to_string(seed);
        return RunByName(id, seeded);
    }
    std::vector<std::string> arguments = {std::filesystem::read_symlink("/proc/self/exe").string(),
                                          "validate",
                                          "--run-check",
                                          id,
                                          "--seed",
                                          std::to_string(seed)};
    if (options.clip) {
        arguments.emplace_back("--clip");
    }
    arguments.insert(arguments.end(), {"--", options.bundle});
    const std::chrono::duration<double> timeout(options.timeoutSeconds);
    return validation::RunInChild(arguments, std::chrono::duration_cast<std::chrono::milliseconds>(timeout));
}

// In the order of the list, each once: those that were named, else all that the bundle promises.
std::vector<const validation::Promise*> ChosenPromises(const ValidateOptions& options) {
    std::vector<const validation::Promise*> chosen;
    for (const validation::Promise& promise : validation::Promises()) {
        const bool isNamed = std::ranges::find(options.only, promise.id) != options.only.end();
        const bool isPromised = options.clip || promise.set == validation::PromiseSet::Interface;
        if (options.only.empty() ? isPromised : isNamed) {
            chosen.push_back(&promise);
        }
    }
    return chosen;
}

PromiseResult Measure(const validation::Promise& promise, const ValidateOptions& options, std::uint64_t seed) {
    const Clock::time_point start = Clock::now();
    validation::Finding finding = Run(std::string(promise.id), options, seed);
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    return {.promise = &promise, .finding = std::move(finding), .milliseconds = time.count()};
}

// Still a fault of the whole run, for the check that it waits for is one.
PromiseResult Skip(const validation::Promise& promise, const std::string& shutBy) {
    return {.promise = &promise,
            .finding = {.outcome = validation::Outcome::Skipped,
                        .text = fmt::format("it cannot be run before {} passes", shutBy)}};
}

void RequireUsable(const ValidateOptions& options) {
    for (const std::string& id : options.only) {
        static_cast<void>(RequirePromise(id));
    }
    if (options.bundle.empty()) {
        throw CLI::RequiredError("BUNDLE");
    }
    if (!std::filesystem::exists(options.bundle)) {
        throw lineup::UsageError("bundle", options.bundle, "there is no such folder");
    }
    const bool timeoutIsRight = options.timeoutSeconds > 0 && options.timeoutSeconds <= kLongestTimeoutSeconds;
    if (!timeoutIsRight) {
        throw lineup::UsageError("timeout", fmt::format("{}", options.timeoutSeconds),
                                 fmt::format("must be above 0, at most {} seconds", kLongestTimeoutSeconds));
    }
}

// The results appear as they come in; JSON is printed whole.
ValidationReport Validate(ValidateOptions options) {
    RequireUsable(options);
    ValidationReport report;
    report.bundle = options.bundle;
    report.seed = ChooseSeed(options.seed);
    report.askedForClip = options.clip;
    options.clip = options.clip || Run(kIdentityQuestion, options, report.seed).outcome == validation::Outcome::Passed;
    report.isBarsAndTone = options.clip;
    if (!options.json) {
        fmt::print("{}", HeaderText(report));
    }
    std::string shutBy;
    for (const validation::Promise* const promise : ChosenPromises(options)) {
        report.results.push_back(shutBy.empty() ? Measure(*promise, options, report.seed) : Skip(*promise, shutBy));
        if (ShutsTheGate(*promise, report.results.back().finding.outcome)) {
            shutBy = promise->id;
        }
        if (!options.json) {
            fmt::print("{}", ResultText(report, report.results.back()));
            std::fflush(stdout);
        }
    }
    return report;
}

void RunValidate(const ValidateOptions& options) {
    if (!options.runCheck.empty()) {
        validation::PrepareChild();
        validation::ReportToParent(RunByName(options.runCheck, options));
    }
    if (options.list) {
        fmt::print("{}", options.json ? ListJson() : ListText());
        return;
    }
    const ValidationReport report = Validate(options);
    fmt::print("{}", options.json ? ReportJson(report) : "\n" + TallyText(report) + "\n");
    if (!report.Passed()) {
        throw CLI::RuntimeError(1);
    }
}

}  // namespace

void AddValidateCommand(CLI::App& app) {
    auto options = std::make_shared<ValidateOptions>();
    CLI::App* const command = app.add_subcommand("validate", "Put the promises of a plug-in's bundle to the test");
    command->add_option("BUNDLE", options->bundle, "The bundle")->type_name("FOLDER");
    command->add_flag("--clip", options->clip, "Hold it to the promises of Bars and Tone too, whatever it says it is");
    command->add_flag("--list", options->list, "List the checks instead: their ids, and what each promises");
    command->add_option("--only", options->only, "Run this check only; may be given more than once")
        ->type_name("ID")
        ->allow_extra_args(false);
    command->add_option("--seed", options->seed, "Draw the same numbers as a run that said this seed [drawn]")
        ->type_name("N");
    command->add_option("--timeout", options->timeoutSeconds, "End a check that takes longer than this [60]")
        ->type_name("SECONDS");
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->add_flag("--in-process", options->inProcess, "Run the checks in this process, for a debugger");
    command->add_option("--run-check", options->runCheck)->group("");  // the process of one check
    command->footer(kValidateHelp);
    command->callback([options] { RunValidate(*options); });
}

}  // namespace cli
