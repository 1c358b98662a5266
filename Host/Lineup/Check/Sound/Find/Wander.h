#pragma once

#include <cmath>
#include <numbers>

namespace lineup::sound {

/// A speed that swings: what is sent for second t arrives Late(t) s after its time.
struct Wander {
    double hertz = 0;
    double sine = 0;  ///< s
    double cosine = 0;

    [[nodiscard]] double Late(double second) const {
        const double angle = 2 * std::numbers::pi * hertz * second;
        return sine * std::sin(angle) + cosine * std::cos(angle);
    }
    /// How far the speed swings: the highest of it, relative.
    [[nodiscard]] double Depth() const { return 2 * std::numbers::pi * hertz * std::hypot(sine, cosine); }
};

}  // namespace lineup::sound
