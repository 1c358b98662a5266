#pragma once

#include "Host/Lineup/Check/Sound/Events/SoundEvent.h"
#include "Host/Lineup/Check/Sound/Find/Find.h"
#include "Host/Lineup/Check/Sound/Find/ToneRuns.h"
#include "Host/Lineup/Check/Sound/Measure/Assign.h"
#include "Host/Lineup/Check/Sound/Measure/Delays.h"
#include "Host/Lineup/Check/Sound/Measure/SlotSound.h"

#include <optional>
#include <span>
#include <vector>

namespace lineup::sound {

/// What arrives at one input, and when.
struct SurveyedInput {
    Arrival arrival;
    double delay = 0;    ///< s after the placing
    int polarity = 0;    ///< 0 where it is not known
    bool exact = false;  ///< the delay is one of phases, not of edges alone
    bool hasEdges = false;
};

/// A first look at a line-up as far as the history holds it: enough to know what is due where.
struct Survey {
    Placing placing;
    std::vector<SurveyedInput> inputs;
    std::vector<SlotNumber> slots;  ///< those that were looked at, in their order
    Cells cells{{}, 0};             ///< of those slots
    std::vector<SoundEvent> jumps;  ///< places in them where time jumps: the placing has them too

    [[nodiscard]] std::vector<double> Delays() const;
};

/// Looks at the slots around those of the sighting. Empty where nothing can be made of them.
[[nodiscard]] std::optional<Survey> MakeSurvey(const History& history, const Sighting& sighting,
                                               std::span<const ToneRun> runs);

}  // namespace lineup::sound
