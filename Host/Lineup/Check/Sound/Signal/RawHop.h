#pragma once

#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <span>

namespace lineup::sound {

/// What a hop is like at the recording's own rate, without the high band. NaN samples, and those beyond what a
/// recording can hold, are made zeros.
[[nodiscard]] HopFeatures ExamineHop(std::span<float> samples);

}  // namespace lineup::sound
