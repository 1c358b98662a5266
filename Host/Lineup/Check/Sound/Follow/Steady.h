#pragma once

#include "Host/Lineup/Check/Sound/Find/Expectation.h"
#include "Host/Lineup/Check/Sound/Find/Reference.h"
#include "Host/Lineup/Check/Sound/Follow/Survey.h"

#include <memory>
#include <optional>
#include <span>

namespace lineup::sound {

/// A tone that goes on for long enough to be a line-up.
struct ToneSighting {
    double frequency = 0;  ///< Hz, roughly
    double first = 0;      ///< s
    double last = 0;
};

/// The first steady tone among those that were followed. Where nobody asks for one it must last, and no other pitch may
/// sound beside it; where the recording is short, `all` of it in s at its end, most of it will do.
[[nodiscard]] std::optional<ToneSighting> FindSteadyTone(std::span<const ToneRun> runs, const Expectation& expected,
                                                         std::optional<double> all);

/// A steady tone, what was sent for it, and what arrives at each input.
struct SteadyTone {
    std::unique_ptr<Reference> reference;
    Survey survey;
};

/// Looks at the tone: its exact pitch, and each input's level and phase. The phases tell delays up to a quarter of the
/// period, and beyond that what is upside down: against most inputs, or the first. Empty where the tone turns out not
/// to be steady.
[[nodiscard]] std::optional<SteadyTone> SurveyTone(const History& history, const ToneSighting& sighting,
                                                   const Expectation& expected,
                                                   const std::shared_ptr<const Importer>& importer);

}  // namespace lineup::sound
