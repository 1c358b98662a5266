#include "Host/Interface/Core/Errors.h"

#include "Host/Interface/Core/Localizer.h"
#include "Host/Services/Text/UnicodeText.h"

namespace zelcore::config {

Error::Error(std::string_view key) : std::runtime_error(ToUtf8(Localizer::Get().GetLocalizedString(key))), mKey(key) {}

void ThrowError(std::string_view key) {
    throw Error(key);
}

}  // namespace zelcore::config
