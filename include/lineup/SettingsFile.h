#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>

#include <filesystem>

namespace lineup {

class TargetFile;

/// A settings file holds a clip's settings record, byte for byte, and nothing else.

/// Reads one, or takes the settings out of a document (see ClipDocument). Throws Error when the file cannot
/// be read or is neither.
[[nodiscard]] LINEUP_API BarsAndToneInfo ReadSettings(const std::filesystem::path& file);

/// Writes `settings` to `target` and gives it its name. Throws Error when that fails; a file of that name
/// is then as it was.
LINEUP_API void WriteSettings(TargetFile& target, const BarsAndToneInfo& settings);

}  // namespace lineup
