#pragma once

#include "Host/Lineup/Check/Sound/Measure/SlotLines.h"

#include <optional>

namespace lineup::sound {

/// What the fundamental of a sine keeps where its tops are cut off at `part` of its amplitude.
[[nodiscard]] double ClippedGain(double part);

/// The harmonic of odd number `n`, from 3 on, of such a sine, against its fundamental.
[[nodiscard]] double ClippedHarmonic(double part, int n);

/// Where a sine was cut off, in parts of its amplitude, whose fundamental is `over` times as high as the tops are now.
/// 1 where it was not.
[[nodiscard]] double PartOfFundamental(double over);

/// The part whose harmonics are those that were heard, where that is what cut them off; empty where some other bend
/// explains them as well.
[[nodiscard]] std::optional<double> PartOfHarmonics(const LineFindings& lines);

/// How far the harmonics are from those of a sine cut off at `part`, against the fundamental, beyond their doubt.
[[nodiscard]] double BesideClipped(const LineFindings& lines, double part);

}  // namespace lineup::sound
