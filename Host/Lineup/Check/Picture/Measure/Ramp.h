#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Reader/DecodedPicture.h"

#include <optional>

namespace lineup::picture {

/// What the luma ramp shows of the codes.
struct RampSteps {
    int bits = 0;      ///< of the file
    int used = 0;      ///< bits of them that ever change: lower ones stand still
    int distinct = 0;  ///< codes
    int due = 0;       ///< codes that a ramp as wide as this one can show at that depth
};

/// Empty where there is no ramp in the frame.
[[nodiscard]] std::optional<RampSteps> MeasureRamp(const DecodedPicture& picture, const CardModel& model,
                                                   const Place& place);

}  // namespace lineup::picture
