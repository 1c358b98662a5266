#include "Host/Services/Text/UnicodeText.h"

#include <boost/locale/encoding_utf.hpp>

namespace conv = boost::locale::conv;

namespace zelcore {
inline namespace parts {

std::string ToUtf8(const Brio::String& text) {
    return conv::utf_to_utf<char>(text.data(), text.data() + text.size(), conv::skip);
}

std::optional<std::string> ToUtf8Strictly(const Brio::String& text) {
    try {
        return conv::utf_to_utf<char>(text.data(), text.data() + text.size(), conv::stop);
    } catch (const conv::conversion_error&) {
        return std::nullopt;
    }
}

Brio::String FromUtf8(std::string_view text) {
    const std::u16string converted = conv::utf_to_utf<char16_t>(text.data(), text.data() + text.size(), conv::skip);
    return {converted.begin(), converted.end()};
}

}  // namespace parts
}  // namespace zelcore
