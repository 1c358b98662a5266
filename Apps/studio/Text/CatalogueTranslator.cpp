#include "Apps/studio/Text/CatalogueTranslator.h"

#include <lineup/interface/Core/Localizer.h>

#include <string>

namespace studio {

// Null where there is no other text: Qt then asks its own translators, and falls back to the English one.
QString CatalogueTranslator::translate(const char* /*context*/, const char* sourceText, const char* /*disambiguation*/,
                                       int /*n*/) const {
    const Brio::String found = zelcore::config::Localizer::Get().GetLocalizedString(std::string(kTextKey) + sourceText);
    const QString text = QString::fromUtf16(found.data(), static_cast<qsizetype>(found.size()));
    return text == QString::fromUtf8(sourceText) ? QString() : text;
}

}  // namespace studio
