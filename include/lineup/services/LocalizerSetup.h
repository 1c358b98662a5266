#pragma once

#include <lineup/interface/Core/Export.h>

#include <filesystem>
#include <string_view>

/// How a host sets up the localiser of the process. Any thread; what has been set holds for the texts
/// asked for afterwards.
namespace zelcore::config {

/// Adds a folder of catalogues: FOLDER/<language>/LC_MESSAGES/BarsAndTone.mo. Folders are asked in the
/// order they were added, and after them Contents/Resources/locale of each loaded bundle. A catalogue
/// that is missing, larger than 1 MiB or broken translates nothing. Adding a folder again reads it anew.
ZEL_API void AddCatalogues(const std::filesystem::path& folder);

/// The language of texts: a locale's name such as "de" or "de_CH.UTF-8"; "C" for the default texts, ""
/// for what LC_ALL, LC_MESSAGES or LANG say, which is the language in use at first.
ZEL_API void SetLanguage(std::string_view language);

}  // namespace zelcore::config
