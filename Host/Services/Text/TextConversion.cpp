#include "Host/Interface/Core/TextConversion.h"

namespace zelcore::utility {

namespace {

constexpr unsigned char kLastAscii = 0x7F;
constexpr char16_t kReplacementCharacter = u'\uFFFD';

}  // namespace

Brio::String AsciiToUTF16(std::string_view ascii) {
    Brio::String text;
    text.reserve(ascii.size());
    for (const char character : ascii) {
        const auto byte = static_cast<unsigned char>(character);
        text.push_back(byte <= kLastAscii ? static_cast<char16_t>(byte) : kReplacementCharacter);
    }
    return text;
}

}  // namespace zelcore::utility
