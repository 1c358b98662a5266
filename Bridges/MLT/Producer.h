#pragma once

#include <framework/mlt.h>

namespace bridge {

/// A new producer of the clip. `argument` names its sound as the property does, and may be null or empty. Null,
/// after a line in the log that says why, when the plug-in is missing or of no use.
[[nodiscard]] mlt_producer NewProducer(mlt_profile profile, const char* argument) noexcept;

}  // namespace bridge
