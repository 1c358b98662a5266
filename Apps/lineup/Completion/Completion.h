#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

/// What could come next on a command line that is being typed: for the completion of shells.
namespace cli {

/// A word that may stand there, and what it means.
struct Candidate {
    std::string word;
    std::string help;  ///< a short phrase; may be empty
};

/// What may stand in the place of the word that is being typed.
struct Completion {
    enum class Names { None, Files, Folders };

    Names names = Names::None;  ///< which names of the file system fit, for the shell to look up
    std::vector<Candidate> candidates{};
};

/// Completes the last of `words`, which may be empty; the others stand before it, the program's own name left out.
/// A word "=" after an option is what some shells make of "--option=value". With "--option=" the candidates are
/// what comes after the sign. A line that cannot become right has no candidates.
[[nodiscard]] Completion Complete(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace cli
