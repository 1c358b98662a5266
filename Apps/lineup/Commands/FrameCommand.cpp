#include "Apps/lineup/Commands/FrameCommand.h"

#include <lineup/Clip.h>
#include <lineup/StillPicture.h>
#include "Apps/lineup/Options/CommonOptions.h"
#include "Apps/lineup/Options/PictureOptions.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>

namespace cli {

namespace {

struct FrameOptions {
    CommonOptions common;
    PictureOptions picture;
    std::string target;
    bool overwrite = false;
    bool quiet = false;
};

void RunFrame(const FrameOptions& options) {
    const lineup::Clip clip(options.common.LoadImporter());
    const Size size = options.picture.ParsedSize();
    lineup::WritePng(clip, size.width, size.height, options.picture.card, options.target, options.overwrite,
                     options.picture.aspect);
    if (!options.quiet) {
        fmt::print("wrote {}: PNG, {}x{}, {} bytes\n", options.target, size.width, size.height,
                   std::filesystem::file_size(options.target));
    }
}

}  // namespace

void AddFrameCommand(CLI::App& app) {
    auto options = std::make_shared<FrameOptions>();
    CLI::App* const command = app.add_subcommand("frame", "Write the card as a PNG picture, in R'G'B'");
    command->add_option("OUT", options->target, "The picture to write: NAME.png")->required();
    AddPictureOptions(*command, options->picture);
    command->add_flag("-y,--overwrite", options->overwrite, "Replace the file if it is there already");
    command->add_flag("-q,--quiet", options->quiet, "Say nothing unless something is wrong");
    AddPluginOption(*command, options->common);
    command->callback([options] { RunFrame(*options); });
}

}  // namespace cli
