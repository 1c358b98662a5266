#pragma once

#include <complex>
#include <cstddef>
#include <optional>
#include <vector>

namespace lineup::sound {

/// The straight line through the phase of a tone over time, against what was sent.
struct PhaseLine {
    double amplitude = 0;       ///< mean, full scale is 1
    std::complex<double> mean;  ///< of the gains, at the line's middle
    double slope = 0;           ///< radians a second
    double scatter = 0;         ///< radians r.m.s. about the line
    double seconds = 0;         ///< how long the line is
    std::size_t blocks = 0;
};

/// The line through blocks that stand `step` s apart; those that are not `there` are left out. Empty for fewer than
/// three.
[[nodiscard]] std::optional<PhaseLine> FitPhaseLine(const std::vector<std::complex<double>>& gains,
                                                    const std::vector<bool>& there, double step);

}  // namespace lineup::sound
