#include "Host/Desktop/Text.h"

namespace zelui::qt {

QString ToQString(const Brio::String& text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

Brio::String ToBrioString(const QString& text) {
    const std::u16string units = text.toStdU16String();
    return {units.begin(), units.end()};
}

}  // namespace zelui::qt
