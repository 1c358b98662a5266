#include "Apps/lineup/Commands/RunProgram.h"

#include <lineup/UsageError.h>
#include "Apps/lineup/Commands/CommandLine.h"
#include "Apps/lineup/Terminal/StandardStreams.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <sstream>
#include <string>

namespace cli {

namespace {

enum ExitCode : int { kDone = 0, kFailed = 1, kUsedWrongly = 2 };

// When not even that can be said, nothing is left to do about it.
void Complain(const std::string& text) {
    (void)std::fputs(text.c_str(), stderr);
}

// Help and the version come as exceptions too.
int Parse(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return kDone;
    } catch (const CLI::RuntimeError& error) {  // a command that has said itself what is wrong
        return error.get_exit_code();
    } catch (const CLI::ParseError& error) {
        std::ostringstream out;
        std::ostringstream err;
        const int code = app.exit(error, out, err);
        std::fputs(out.str().c_str(), stdout);
        Complain(err.str());
        return code == 0 ? kDone : kUsedWrongly;
    }
}

}  // namespace

int RunProgram(int argc, char** argv) {
    try {
        const int code = Parse(*MakeCommandLine(), argc, argv);
        FinishStandardOutput();
        return code;
    } catch (const lineup::UsageError& error) {
        const bool isOption = error.Option() != "output";  // which is given without a name
        Complain(fmt::format("lineup: {}{}\nRun lineup with --help to see what there is.\n", isOption ? "--" : "",
                             error.what()));
        return kUsedWrongly;
    } catch (const std::exception& error) {
        Complain(fmt::format("lineup: {}\n", error.what()));
        return kFailed;
    }
}

}  // namespace cli
