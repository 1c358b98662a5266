#pragma once

#include "Host/Services/Text/CatalogueEntry.h"
#include "Host/Services/Text/LanguageName.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace zelcore {

/// The translations into one language that a folder of catalogues offers. Movable.
class Catalogue {
public:
    /// Reads folder/<language>/LC_MESSAGES/BarsAndTone.mo, the closest match to `language` there is; one
    /// that is missing, too large or broken translates nothing. Never throws for what a file holds.
    Catalogue(const std::filesystem::path& folder, const LanguageName& language);

    /// The translation of `key` as UTF-8, or nothing.
    [[nodiscard]] std::optional<std::string> Find(const std::string& key) const;

private:
    std::unique_ptr<Translations> mTranslations;
};

}  // namespace zelcore
