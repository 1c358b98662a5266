#pragma once

#include <lineup/Clip.h>

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <string>

/// A clip in words, for tables and for JSON.
namespace cli {

/// A file type as its four characters, first one most significant: "XQNV".
[[nodiscard]] std::string FileTypeText(std::uint32_t code);

/// A pixel format as its four bytes in memory: "VUx7".
[[nodiscard]] std::string PixelFormatText(std::uint32_t code);

/// "stereo (L R), 48000 Hz".
[[nodiscard]] std::string SoundText(const lineup::Clip& clip);

/// "1000 Hz at -12.04 dBFS", or the sequence's title and the length of its cycle, or that it is unknown.
[[nodiscard]] std::string SignalText(const lineup::Clip& clip);

/// "5.000 s (240000 samples)".
[[nodiscard]] std::string LengthText(const lineup::Clip& clip);

/// The same as an object.
[[nodiscard]] nlohmann::ordered_json ClipJson(const lineup::Clip& clip);

/// The same of a clip of which nothing is known but its description: "3 channels, 48000 Hz", or "none".
[[nodiscard]] std::string SoundText(const lineup::ClipDescription& clip);
[[nodiscard]] std::string LengthText(const lineup::ClipDescription& clip);
[[nodiscard]] nlohmann::ordered_json ClipJson(const lineup::ClipDescription& clip);

}  // namespace cli
