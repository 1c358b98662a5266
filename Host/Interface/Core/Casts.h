#pragma once

#include <string_view>

#include "Errors.h"

namespace zelcore::utility {

inline constexpr std::string_view kInvalidTypeConversion =
    "$$$/zelcore/utility/Error/InvalidTypeConversion=Invalid type conversion.";

/// `object` as a Target*. Throws the host error kInvalidTypeConversion when it is null or of another
/// type.
template <class Target, class Source>
Target* NonOptionalDynamicCast(Source* object) {
    auto* const converted = dynamic_cast<Target*>(object);
    if (converted == nullptr) {
        zelcore::config::ThrowError(kInvalidTypeConversion);
    }
    return converted;
}

}  // namespace zelcore::utility
