#pragma once

#include <QString>

namespace studio {

/// Marks the text whose translation says which numbers take the form for one: "=1" is 1 alone, "<2" all below 2.
inline constexpr const char* kNumbersOfOne = QT_TRANSLATE_NOOP("Counted", "=1");

/// `one` or `many`, translated, whichever goes with `count` in the language in use; both are marked where they stand,
/// and have a place %1 for the count.
[[nodiscard]] QString FormFor(double count, const char* one, const char* many);

}  // namespace studio
