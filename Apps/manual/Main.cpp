// Writes the manual pages of the programs from what they understand: make_manual FOLDER VERSION DATE
#include "Apps/lineup/Commands/CommandLine.h"
#include "Apps/manual/ManualPage.h"
#include "Apps/studio/CommandLine.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

namespace {

void Write(const std::vector<manual::Page>& pages, const std::filesystem::path& folder) {
    for (const manual::Page& page : pages) {
        const std::filesystem::path file = folder / (page.name + ".1");
        std::ofstream stream(file);
        stream << page.source;
        if (!stream.flush()) {
            throw std::runtime_error("cannot write " + file.string());
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        (void)std::fputs("usage: make_manual FOLDER VERSION DATE\n", stderr);
        return 2;
    }
    try {
        const std::filesystem::path folder = argv[1];
        const manual::Edition edition{argv[2], argv[3]};
        std::filesystem::create_directories(folder);
        Write(manual::ManualPages(*cli::MakeCommandLine(), edition, {"lineup-studio"}), folder);
        studio::Arguments arguments;
        Write(manual::ManualPages(*studio::MakeCommandLine(arguments), edition, {"lineup"}), folder);
        return 0;
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "make_manual: %s\n", error.what());
        return 1;
    }
}
