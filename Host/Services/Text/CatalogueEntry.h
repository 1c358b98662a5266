#pragma once

#include "Host/Services/Text/LanguageName.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What the library that reads message catalogues offers. It is the only part that needs the locale library
/// and its tables, and is loaded when the first text is looked up.
namespace zelcore {

/// The translations of one folder of catalogues; see Catalogue. Any thread.
class Translations {
public:
    Translations() = default;
    virtual ~Translations() = default;
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    /// The translation of `key` as UTF-8, or nothing.
    [[nodiscard]] virtual std::optional<std::string> Find(const std::string& key) const = 0;
};

/// The file name of the library; it belongs to libzelcore (see CompanionLibrary).
inline constexpr const char* kCatalogueLibraryName = "libzelcore-catalogues.so";

/// What a file holds if it is a catalogue that can be trusted, else nothing.
using CatalogueBytes = std::vector<char>(const std::string& file);

/// Reads a folder's catalogue, file by file through `bytes`, into `translations`; leaves it null where there is
/// nothing to translate with.
using ReadCatalogueFunction = void(const std::filesystem::path& folder, const LanguageName& language,
                                   CatalogueBytes& bytes, std::unique_ptr<Translations>& translations);
inline constexpr const char* kReadCatalogueName = "zelcoreReadCatalogue";

}  // namespace zelcore
