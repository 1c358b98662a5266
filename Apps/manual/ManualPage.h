#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace manual {

/// What stands around the pages of one version.
struct Edition {
    std::string version;
    std::string date;  ///< YYYY-MM-DD
};

/// A page of section 1.
struct Page {
    std::string name;  ///< "lineup-render"
    std::string source;
};

/// The pages of a program: its own, and one of each command. `related` are pages of others that its own points to.
[[nodiscard]] std::vector<Page> ManualPages(const CLI::App& program, const Edition& edition,
                                            const std::vector<std::string>& related);

}  // namespace manual
