#pragma once

#include <lineup/ExportSettings.h>
#include "Apps/lineup/Options/Values.h"

#include <CLI/App.hpp>

#include <string>

namespace cli {

/// The options that choose a clip's picture.
struct PictureOptions {
    std::string size = "1920x1080";
    lineup::Card card = lineup::Card::Auto;
    lineup::PictureAspect aspect = lineup::PictureAspect::Auto;

    [[nodiscard]] Size ParsedSize() const { return ParseSize(size); }
};

/// Adds --size, --card and --aspect.
void AddPictureOptions(CLI::App& command, PictureOptions& options);

/// Adds --scan.
void AddScanOption(CLI::App& command, lineup::Scan& scan);

}  // namespace cli
