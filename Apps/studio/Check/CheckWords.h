#pragma once

#include <lineup/CheckReport.h>

#include <QString>
#include <cstddef>

/// What a check found, in words, as a window shows it.
namespace studio {

/// "Nothing wrong", "2 faults".
[[nodiscard]] QString VerdictWords(const lineup::CheckReport& report);

/// "BLITS · 48 kHz · 6 inputs · 1920 × 1080 · 10 bit · HD card".
[[nodiscard]] QString FoundWords(const lineup::CheckReport& report);

/// "Limited BT.709 codes; the file says BT.601": of a card that was found.
[[nodiscard]] QString CodesWords(const lineup::CheckReport& report);

/// "5 Ls": an input, counted from 1, and the channel that arrives there.
[[nodiscard]] QString InputName(const lineup::CheckReport& report, std::size_t input);

/// "Ls": the channel that arrives at an input, or the input's number from 1.
[[nodiscard]] QString ChannelName(const lineup::CheckReport& report, std::size_t input);

/// "Wrong matrix": the kind of fault.
[[nodiscard]] QString KindWords(const lineup::CheckFault& fault);

/// "Inputs 1, 2", "Picture".
[[nodiscard]] QString WhereWords(const lineup::CheckFault& fault);

/// "−3.02 dB"; empty where it was not measured.
[[nodiscard]] QString MeasuredWords(const lineup::CheckFault& fault);
[[nodiscard]] QString DueWords(const lineup::CheckFault& fault);

/// Nothing of the recording could be read: why. Empty where there is something to show.
[[nodiscard]] QString UnreadableWords(const lineup::CheckReport& report);

}  // namespace studio
