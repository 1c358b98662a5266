#pragma once

#include <CLI/App.hpp>

#include <memory>
#include <string>

namespace studio {

/// What a person gave the program on its command line.
struct Arguments {
    std::string file;  ///< the document to open; empty: none
};

/// Everything that the program understands beside the options that Qt takes for itself. `arguments` must outlive it.
[[nodiscard]] std::unique_ptr<CLI::App> MakeCommandLine(Arguments& arguments);

}  // namespace studio
