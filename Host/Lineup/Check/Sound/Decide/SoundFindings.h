#pragma once

#include <lineup/CheckReport.h>

#include <optional>
#include <vector>

namespace lineup {

inline namespace parts {

/// Where a line-up lies in what was heard: s from the start of the source.
struct HeardLineup {
    double startsAt = 0;
    double endsAt = 0;
    double sentCycle = 0;   ///< s
    double cycle = 0;       ///< s, as it is played; of a steady tone the length of a stretch of it
    double cycleStart = 0;  ///< where a cycle would begin, by the phase of the last tones; of a steady tone nothing
    bool isSteady = false;
    double unsteady = 0;  ///< how far the speed moves within the tones, relative, r.m.s.
};

/// What was found of the sound, and what is wrong with it.
struct SoundFindings {
    CheckVerdict verdict = CheckVerdict::CannotTell;
    SoundReport sound;
    std::optional<HeardLineup> heard;  ///< empty where no line-up was found
    std::vector<CheckFault> faults;
    std::vector<CheckNote> notes;
};

}  // namespace parts

}  // namespace lineup
