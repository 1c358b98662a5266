#pragma once

#include <lineup/Api.h>
#include <lineup/Card.h>
#include <lineup/Clip.h>
#include <lineup/PictureAspect.h>

#include <filesystem>

namespace lineup {

/// Writes the clip's picture as an 8-bit R'G'B' PNG file of width x height pixels, 1 to PictureFormat::kMostSize each,
/// odd numbers too: full range, what lies below black or above white clipped. The file
/// appears whole or not at all. Throws UsageError for a size that cannot be, or when the target exists
/// and `overwrite` is false; Error when it cannot be written. Any thread.
LINEUP_API void WritePng(const Clip& clip, int width, int height, Card card, const std::filesystem::path& target,
                         bool overwrite, PictureAspect aspect = PictureAspect::Auto);

}  // namespace lineup
