#pragma once

#include "Host/Lineup/Check/Sound/Signal/History.h"

#include <optional>

namespace lineup::sound {

/// Tops that are cut off, if only for a moment: the highest samples of all, several in a row that are exactly the same.
struct FlatTops {
    float least = 0;
    float most = 0;
    float flatLeast = 0;  ///< the farthest from zero at which a top is flat
    float flatMost = 0;

    /// Takes a hop in which a tone is due. `omega` is that of the lowest tone, radians a sample: a slow one rests at
    /// its tops for some samples too, where samples are coarse.
    void Add(const HopFeatures& hop, double omega);

    /// The height at which tops are cut off where the sound lies around `zero`, by what may have been moved before or
    /// after; empty where they are not.
    [[nodiscard]] std::optional<double> Height(double zero) const;
};

}  // namespace lineup::sound
