#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"

#include <string>

namespace lineup::picture {

/// What a person calls a colour of R'G'B': "75 % yellow", "40 % grey", "below black", "-I".
[[nodiscard]] std::string PatchName(const Triple& rgb);

}  // namespace lineup::picture
