#pragma once

#include "Host/Interface/Brio/String.h"

#include <QString>

namespace zelui::qt {

/// The same text as Qt's and as the host's own string.
[[nodiscard]] QString ToQString(const Brio::String& text);
[[nodiscard]] Brio::String ToBrioString(const QString& text);

}  // namespace zelui::qt
