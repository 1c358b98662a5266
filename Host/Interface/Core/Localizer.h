#pragma once

#include <string_view>

#include "../Brio/String.h"
#include "Export.h"

namespace zelcore::config {

/// Turns localisation keys into the texts of the language in use. A key begins with "$$$/" and carries
/// its default text after the first equals sign; keys without a translation give that default text, and
/// another text gives itself. Any thread.
class ZEL_API Localizer {
public:
    /// The one localiser of the process.
    static Localizer& Get();

    /// The text for `key`, which is UTF-8 and includes its default text.
    [[nodiscard]] virtual Brio::String GetLocalizedString(std::string_view key) const = 0;

    virtual ~Localizer() = default;
};

}  // namespace zelcore::config
