#pragma once

#include <span>

namespace studio {

/// Choices that go together, by the name of what they are for.
struct ExportPreset {
    const char* name;  ///< to be translated
    const char* extension;
    const char* videoCodec;  ///< empty: no picture
    const char* audioCodec;  ///< empty: no sound
};

[[nodiscard]] std::span<const ExportPreset> ExportPresets();

}  // namespace studio
