#include "Host/Services/Catalogue.h"

#include "Host/Services/CatalogueCheck.h"
#include "Host/Services/SmallFile.h"

#include <boost/locale/gnu_gettext.hpp>
#include <boost/locale/message.hpp>

#include <stdexcept>
#include <vector>

namespace zelcore {

namespace {

namespace mo = boost::locale::gnu_gettext;
using Messages = boost::locale::message_format<char>;

constexpr const char* kDomain = "BarsAndTone";

// What the catalogue reader is given to read; empty stands for a file that is not there.
std::vector<char> ReadSoundCatalogue(const std::string& file, const std::string& /*encoding*/) {
    auto bytes = ReadSmallFile(file);
    return bytes && IsSoundCatalogue(*bytes) ? *std::move(bytes) : std::vector<char>();
}

}  // namespace

Catalogue::Catalogue(const std::filesystem::path& folder, const LanguageName& language) {
    if (language.language.empty()) {
        return;
    }
    mo::messages_info info;
    info.language = language.language;
    info.country = language.country;
    info.variant = language.variant;
    info.encoding = "UTF-8";
    info.domains.emplace_back(kDomain);
    info.paths.push_back(folder.string());
    info.callback = ReadSoundCatalogue;
    try {
        mMessages = std::locale(mMessages, mo::create_messages_facet<char>(info));
    } catch (const std::runtime_error&) {
        // A sound file whose description names no character set or one that nobody knows.
    }
}

std::optional<std::string> Catalogue::Find(const std::string& key) const {
    if (!std::has_facet<Messages>(mMessages)) {
        return std::nullopt;
    }
    const char* const text = std::use_facet<Messages>(mMessages).get(0, nullptr, key.c_str());
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
}

}  // namespace zelcore
