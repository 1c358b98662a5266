#pragma once

#include <lineup/CheckReport.h>
#include "Host/Lineup/Check/Sound/Decide/Case.h"
#include "Host/Lineup/Check/Sound/Follow/Lineup.h"

namespace lineup::sound {

/// The delay that all others count from, s after the placing: of two channels that of the first, else the median.
[[nodiscard]] double UsualDelay(const Lineup& lineup);

/// What was measured of a line-up, as a report has it; without the lanes.
[[nodiscard]] SoundReport SoundReportOf(const Lineup& lineup, const RecordingFacts& facts);

}  // namespace lineup::sound
