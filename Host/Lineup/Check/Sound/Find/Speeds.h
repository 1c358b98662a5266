#pragma once

#include <span>
#include <string_view>

namespace lineup::sound {

/// The speeds at which a line-up is looked for.
inline constexpr double kSlowest = 0.85;
inline constexpr double kFastest = 1.18;

/// A way to play a recording too fast or too slowly that is met with.
struct KnownSpeed {
    double ratio;  ///< above 1 is too fast
    std::string_view cause;
};

[[nodiscard]] std::span<const KnownSpeed> KnownSpeeds();

/// The known speed that is nearest to `ratio`, and within `ppm` of it, or null.
[[nodiscard]] const KnownSpeed* FindKnownSpeed(double ratio, double ppm);

}  // namespace lineup::sound
