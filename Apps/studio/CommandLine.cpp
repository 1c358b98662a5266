#include "Apps/studio/CommandLine.h"

#include "Apps/version/BuildVersion.h"

#include <CLI/CLI.hpp>

namespace studio {

namespace {

constexpr const char* kHelp =
    "Without a document the window opens on a new clip.\n"
    "\n"
    "Options of Qt such as -style and -platform are taken too, but not together with those above.";

}  // namespace

std::unique_ptr<CLI::App> MakeCommandLine(Arguments& arguments) {
    auto app = std::make_unique<CLI::App>("Look at line-up clips, play, edit and export them", "lineup-studio");
    app->add_option("FILE", arguments.file, "The document to open");
    app->set_version_flag("-v,--version", "lineup-studio " + apps::BuildVersion());
    app->footer(kHelp);
    return app;
}

}  // namespace studio
