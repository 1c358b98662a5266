#pragma once

#include <lineup/Clip.h>
#include <lineup/ExportSettings.h>

#include <filesystem>

namespace lineup {

/// Writes the clip's picture as WritePng says; its size has been checked.
void WritePngFile(const Clip& clip, int width, int height, Card card, const std::filesystem::path& target,
                  bool overwrite);

}  // namespace lineup
