#include "Apps/lineup/FrameCommand.h"
#include "Apps/lineup/InfoCommand.h"
#include "Apps/lineup/Interrupt.h"
#include "Apps/lineup/PeaksCommand.h"
#include "Apps/lineup/RenderCommand.h"
#include "Apps/lineup/SettingsCommand.h"
#include "Apps/lineup/StandardStreams.h"
#include "Apps/lineup/ValidateCommand.h"
#include "Host/Lineup/Export/UsageError.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <sstream>
#include <string>

namespace {

enum ExitCode : int { kDone = 0, kFailed = 1, kUsedWrongly = 2 };

constexpr const char* kExamples =
    "Examples:\n"
    "  lineup render lineup.mov                             five seconds of ProRes, 1920x1080, 25 fps\n"
    "  lineup render lineup.wav --level -18 --duration 60   a minute of tone at -18 dBFS\n"
    "  lineup render ident.mov --ident blits --cycles 1     one BLITS cycle in six channels\n"
    "  lineup frame card.png                                the card as a picture\n"
    "  lineup peaks ident.png --ident blits                 its waveform overview\n"
    "  lineup settings tone.batn                            choose the tone in a dialog\n"
    "  lineup render tone.mov --settings tone.batn          and use what was chosen\n"
    "  lineup validate My.bundle                            put another plug-in to the test\n"
    "  lineup COMMAND --help                                the options of one command\n"
    "\n"
    "The plug-in is BarsAndTone.bundle beside the folder of this program, else in ../lib/lineup from there. One that\n"
    "belongs to somebody else, or that everybody can write to, is used only when --plugin names it.\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 used wrongly; ended by a signal when interrupted.";

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

int Run(CLI::App& app, int argc, char** argv) {
    try {
        const int code = Parse(app, argc, argv);
        cli::FinishStandardOutput();
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

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): when not even a message can be made, ending is what is left
int main(int argc, char** argv) {
    cli::FillStandardStreams();
    cli::PrepareForSignals();
    CLI::App app("Bars and Tone: line-up clips, exact to the bit.", "lineup");
    app.require_subcommand(1);
    app.set_version_flag("--version", "lineup " LINEUP_VERSION);
    app.footer(kExamples);
    cli::AddRenderCommand(app);
    cli::AddFrameCommand(app);
    cli::AddPeaksCommand(app);
    cli::AddInfoCommand(app);
    cli::AddSettingsCommand(app);
    cli::AddValidateCommand(app);
    const int code = Run(app, argc, argv);
    if (const int signal = cli::Interrupted(); signal != 0) {
        cli::EndBy(signal);
    }
    return code;
}
