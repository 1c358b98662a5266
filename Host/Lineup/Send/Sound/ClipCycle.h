#pragma once

#include <lineup/Api.h>
#include <lineup/Clip.h>

#include <cstdint>

namespace lineup {
inline namespace parts {

/// The samples after which a clip's sound is the same again, every tone at its phase: a whole number of seconds. A
/// stream reads each clip time as that within the first of these cycles, where rounding is the least and years fit.
[[nodiscard]] LINEUP_API std::int64_t CycleSamples(const Clip& clip);

}  // namespace parts
}  // namespace lineup
