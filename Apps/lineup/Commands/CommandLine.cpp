#include "Apps/lineup/Commands/CommandLine.h"

#include "Apps/lineup/Commands/CheckCommand.h"
#include "Apps/lineup/Commands/CompleteCommand.h"
#include "Apps/lineup/Commands/FrameCommand.h"
#include "Apps/lineup/Commands/InfoCommand.h"
#include "Apps/lineup/Commands/PeaksCommand.h"
#include "Apps/lineup/Commands/RenderCommand.h"
#include "Apps/lineup/Commands/SendCommand.h"
#include "Apps/lineup/Commands/SettingsCommand.h"
#include "Apps/lineup/Commands/ValidateCommand.h"
#include "Apps/version/BuildVersion.h"

#include <CLI/CLI.hpp>

namespace cli {

namespace {

constexpr const char* kMoreHelp =
    "Examples:\n"
    "  lineup render lineup.mov                             five seconds of ProRes, 1920x1080, 25 fps\n"
    "  lineup render lineup.wav --level -18 --duration 60   a minute of tone at -18 dBFS\n"
    "  lineup render ident.mov --ident blits --cycles 1     one BLITS cycle in six channels\n"
    "  lineup frame card.png                                the card as a picture\n"
    "  lineup peaks ident.png --ident blits                 its waveform overview\n"
    "  lineup settings tone.batn                            choose the tone in a dialog\n"
    "  lineup render tone.mov --settings tone.batn          and use what was chosen\n"
    "  lineup send udp://239.1.2.3:5000                     a stream that keeps running\n"
    "  lineup check from-truck.mxf                          what the path did to it\n"
    "  lineup validate My.bundle                            put another plug-in to the test\n"
    "  lineup COMMAND --help                                the options of one command\n"
    "\n"
    "The plug-in is BarsAndTone.bundle beside the folder of this program, else in ../lib/lineup from there. One that\n"
    "belongs to somebody else, or that everybody can write to, is used only when --plugin names it.\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 used wrongly, 3 cannot be told (check); ended by a signal when interrupted.";

}  // namespace

std::unique_ptr<CLI::App> MakeCommandLine() {
    auto app = std::make_unique<CLI::App>("Bars and Tone: line-up clips, exact to the bit.", "lineup");
    app->require_subcommand(1);
    app->set_version_flag("--version", "lineup " + apps::BuildVersion());
    app->footer(kMoreHelp);
    AddRenderCommand(*app);
    AddSendCommand(*app);
    AddFrameCommand(*app);
    AddPeaksCommand(*app);
    AddInfoCommand(*app);
    AddSettingsCommand(*app);
    AddCheckCommand(*app);
    AddValidateCommand(*app);
    AddCompleteCommand(*app);
    return app;
}

}  // namespace cli
