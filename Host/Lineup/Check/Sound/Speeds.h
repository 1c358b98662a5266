#pragma once

#include <span>
#include <string_view>

namespace lineup::sound {

/// A way to play a recording too fast or too slowly that is met with.
struct KnownSpeed {
    double ratio;  ///< above 1 is too fast
    std::string_view cause;
};

[[nodiscard]] std::span<const KnownSpeed> KnownSpeeds();

/// The known speed within `ppm` of `ratio`, or null.
[[nodiscard]] const KnownSpeed* FindKnownSpeed(double ratio, double ppm);

}  // namespace lineup::sound
