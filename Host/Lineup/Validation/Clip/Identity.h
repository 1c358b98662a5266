#pragma once

#include "Host/Lineup/Validation/Examination/RawImporter.h"

#include <cstdint>
#include <vector>

namespace lineup::validation {

/// The file type of Bars and Tone: "XQNV".
inline constexpr std::uint32_t kBarsAndToneFileType = 0x58514E56;

/// The file types that a plug-in lists, as far as it does.
[[nodiscard]] std::vector<std::uint32_t> FileTypes(const RawImporter& plugin);

}  // namespace lineup::validation
