#include "Apps/lineup/Commands/CompleteCommand.h"

#include "Apps/lineup/Completion/Completion.h"

#include <fmt/format.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace cli {

namespace {

constexpr std::array<const char*, 3> kNames = {"none", "files", "folders"};

void RunComplete(const CLI::App& app, const std::vector<std::string>& words) {
    const Completion completion = Complete(app, words);
    fmt::print("{}\n", kNames.at(static_cast<std::size_t>(completion.names)));
    for (const Candidate& candidate : completion.candidates) {
        fmt::print("{}\t{}\n", candidate.word, candidate.help);
    }
}

}  // namespace

void AddCompleteCommand(CLI::App& app) {
    auto words = std::make_shared<std::vector<std::string>>();
    CLI::App* const command = app.add_subcommand("complete", "Complete a command line")->group("");
    command->add_option("WORDS", *words)->required();
    command->callback([&app, words] { RunComplete(app, *words); });
}

}  // namespace cli
