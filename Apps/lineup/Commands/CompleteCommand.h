#pragma once

#include <CLI/App.hpp>

namespace cli {

/// Adds `lineup complete -- WORDS...`, which the completion of shells calls; no help shows it. WORDS are those of a
/// command line after the program's name; the last one is being typed. It prints "none", "files" or "folders", for
/// what the shell should look up itself, then a line a candidate: the word, a tab, what it means.
void AddCompleteCommand(CLI::App& app);

}  // namespace cli
