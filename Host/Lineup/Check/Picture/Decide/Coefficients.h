#pragma once

#include "Host/Lineup/Check/Picture/Decide/FitChain.h"

#include <optional>
#include <span>

namespace lineup::picture {

/// The shares of red, green and blue in luma that the patches have, where they differ from those of the matrix that is
/// due, explain the patches several times better than it does, and move a patch by `least` codes: a digit is wrong in
/// somebody's table.
[[nodiscard]] std::optional<Triple> OddCoefficients(const CodeScale& scale, std::span<const ColourPair> pairs,
                                                    double least);

}  // namespace lineup::picture
