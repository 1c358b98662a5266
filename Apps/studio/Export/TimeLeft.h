#pragma once

#include <QString>

namespace studio {

/// How long a job that did `share` (0 to 1) of its work in `seconds` will take for the rest, in words: "about
/// 5 s left". Empty while that is anybody's guess.
[[nodiscard]] QString TimeLeftWords(double share, double seconds);

}  // namespace studio
