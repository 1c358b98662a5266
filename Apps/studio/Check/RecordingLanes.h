#pragma once

#include <lineup/CheckReport.h>
#include "Apps/studio/Views/LanePainter.h"

#include <cstdint>
#include <vector>

namespace studio {

/// Samples of a recording from its start to the end of what was found, 0 without sound. At the rate that SoundRate()
/// says.
[[nodiscard]] std::int64_t SoundSamples(const lineup::CheckReport& report);

/// The recording's sample rate; a usual one where it does not say.
[[nodiscard]] double SoundRate(const lineup::CheckReport& report);

/// The level of each input at a place, s: its highest peak of that step of the lanes, full scale is 1.
[[nodiscard]] std::vector<float> LevelsAt(const lineup::CheckReport& report, double seconds);

/// What was found of the sound, a lane an input, with the outline of what was expected over it, a line where a fault
/// has its place, and a frame round the lanes of `inputs`.
[[nodiscard]] QPixmap DrawRecording(const lineup::CheckReport& report, const std::vector<int>& inputs,
                                    const LaneSpan& span, const LaneView& view);

}  // namespace studio
