#include "Host/Services/Text/Catalogue.h"

#include "Host/Services/Bundles/SmallFile.h"
#include "Host/Services/Text/CatalogueCheck.h"
#include "Host/Services/Text/CatalogueLibrary.h"

#include <utility>
#include <vector>

namespace zelcore {

namespace {

std::vector<char> SoundCatalogue(const std::string& file) {
    auto bytes = ReadSmallFile(file);
    return bytes && IsSoundCatalogue(*bytes) ? *std::move(bytes) : std::vector<char>();
}

}  // namespace

Catalogue::Catalogue(const std::filesystem::path& folder, const LanguageName& language) {
    if (language.language.empty()) {
        return;
    }
    if (ReadCatalogueFunction* const read = CatalogueReader()) {
        read(folder, language, SoundCatalogue, mTranslations);
    }
}

std::optional<std::string> Catalogue::Find(const std::string& key) const {
    return mTranslations ? mTranslations->Find(key) : std::nullopt;
}

}  // namespace zelcore
