#include "Apps/lineup/FrameCommand.h"
#include "Apps/lineup/InfoCommand.h"
#include "Apps/lineup/PeaksCommand.h"
#include "Apps/lineup/RenderCommand.h"
#include "Apps/lineup/SettingsCommand.h"
#include "Apps/lineup/ValidateCommand.h"
#include "Host/Lineup/Export/UsageError.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cstdio>
#include <exception>

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
    "Exit status: 0 done, 1 failed, 2 used wrongly.";

int Run(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return kDone;
    } catch (const CLI::RuntimeError& error) {  // a command that has said itself what is wrong
        return error.get_exit_code();
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kDone : kUsedWrongly;
    } catch (const lineup::UsageError& error) {
        const bool isOption = error.Option() != "output";  // which is given without a name
        fmt::print(stderr, "lineup: {}{}\nRun lineup with --help to see what there is.\n", isOption ? "--" : "",
                   error.what());
        return kUsedWrongly;
    } catch (const std::exception& error) {
        fmt::print(stderr, "lineup: {}\n", error.what());
        return kFailed;
    }
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): when not even a message can be made, ending is what is left
int main(int argc, char** argv) {
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
    return Run(app, argc, argv);
}
