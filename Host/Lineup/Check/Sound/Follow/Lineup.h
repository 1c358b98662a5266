#pragma once

#include "Host/Lineup/Check/Sound/Events/SoundEvent.h"
#include "Host/Lineup/Check/Sound/Follow/Survey.h"
#include "Host/Lineup/Check/Sound/Measure/Cells.h"
#include "Host/Lineup/Check/Sound/Measure/FlatTops.h"
#include "Host/Lineup/Check/Sound/Measure/LevelTrack.h"
#include "Host/Lineup/Check/Sound/Measure/SlotLines.h"
#include "Host/Lineup/Check/Sound/Measure/Steadiness.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Sound/Signal/Tally.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lineup::sound {

/// What is known of one input, over the whole line-up.
struct InputFindings {
    SurveyedInput surveyed;
    LevelTally toneNoise;  ///< mean square of what is neither tone nor dc, in blocks under its own tone
    LevelTally gapNoise;   ///< the same in blocks without
    Spread dc;
    LineFindings lines;
    double tops = 0;     ///< samples that lie by the extremes of their hop, where the full level is due
    double samples = 0;  ///< all of those hops
    std::uint32_t bits = 0;
    double least = 0;  ///< the lowest sample
    double most = 0;
    FlatTops flat;
};

/// How fast it plays, by the phase of its tones.
struct SpeedFindings {
    double weight = 0;
    double slopes = 0;   ///< weighted: what the speed is off from the placing's pitch, relative
    double seconds = 0;  ///< of tone
    Spread slotSlopes;   ///< of single slots, relative
    Spread shifts;       ///< s between one slot and the next
};

/// A line-up as it was followed from its start to its end.
struct Lineup {
    const Reference* reference = nullptr;
    Placing placing;      ///< where the survey was made
    Placing lastPlacing;  ///< by the last tones that were followed
    Cells cells{{}, 0};   ///< phases are those of each input's own delay
    std::vector<InputFindings> inputs;
    SpeedFindings speed;
    double startsAt = 0;  ///< s
    double endsAt = 0;
    bool startSeen = false;  ///< the recording begins before it
    bool endSeen = false;    ///< the recording goes on after it
    std::vector<LevelPoint> levels;
    Steadiness steadiness;
    std::vector<SoundEvent> events;
    std::size_t moreEvents = 0;  ///< that are not kept
};

}  // namespace lineup::sound
