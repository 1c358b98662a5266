#pragma once

#include <lineup/CheckReport.h>

#include <vector>

namespace lineup {

inline namespace parts {

/// What was found of the sound, and what is wrong with it.
struct SoundFindings {
    CheckVerdict verdict = CheckVerdict::CannotTell;
    SoundReport sound;
    std::vector<CheckFault> faults;
    std::vector<CheckNote> notes;
};

}  // namespace parts

}  // namespace lineup
