#include "Host/Interface/Core/Export.h"
#include "Host/Services/Text/CatalogueEntry.h"

#include <boost/locale/gnu_gettext.hpp>
#include <boost/locale/message.hpp>

#include <locale>
#include <stdexcept>
#include <type_traits>

namespace zelcore {

namespace {

namespace mo = boost::locale::gnu_gettext;
using Messages = boost::locale::message_format<char>;

constexpr const char* kDomain = "BarsAndTone";

class MessageFacet : public Translations {
public:
    explicit MessageFacet(const std::locale& messages) : mMessages(messages) {}

    [[nodiscard]] std::optional<std::string> Find(const std::string& key) const override {
        const char* const text = std::use_facet<Messages>(mMessages).get(0, nullptr, key.c_str());
        return text == nullptr ? std::nullopt : std::optional<std::string>(text);
    }

private:
    std::locale mMessages;
};

}  // namespace

// What libzelcore looks up by name; everything else in this library is its own affair.
extern "C" ZEL_API void zelcoreReadCatalogue(const std::filesystem::path& folder, const LanguageName& language,
                                             CatalogueBytes& bytes, std::unique_ptr<Translations>& translations) {
    mo::messages_info info;
    info.language = language.language;
    info.country = language.country;
    info.variant = language.variant;
    info.encoding = "UTF-8";
    info.domains.emplace_back(kDomain);
    info.paths.push_back(folder.string());
    info.callback = [&bytes](const std::string& file, const std::string& /*encoding*/) { return bytes(file); };
    try {
        const std::locale messages(std::locale::classic(), mo::create_messages_facet<char>(info));
        if (std::has_facet<Messages>(messages)) {
            translations = std::make_unique<MessageFacet>(messages);
        }
    } catch (const std::runtime_error&) {
        // A sound file whose description names no character set or one that nobody knows.
    }
}

static_assert(std::is_same_v<decltype(zelcoreReadCatalogue), ReadCatalogueFunction>);

}  // namespace zelcore
