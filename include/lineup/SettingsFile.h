#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>

#include <filesystem>

namespace lineup {

/// A settings file holds a clip's settings record, byte for byte, and nothing else.

/// Reads one, or takes the settings out of a document (see ClipDocument). Throws Error when the file cannot
/// be read or is neither.
[[nodiscard]] LINEUP_API BarsAndToneInfo ReadSettings(const std::filesystem::path& file);

/// Writes `settings` as the file `target`, which appears whole or not at all. Throws UsageError when it exists and
/// `overwrite` is false, Error when it cannot be written. A file of that name is then as it was.
LINEUP_API void WriteSettings(const std::filesystem::path& target, const BarsAndToneInfo& settings, bool overwrite);

}  // namespace lineup
