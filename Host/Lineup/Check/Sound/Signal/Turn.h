#pragma once

#include <numbers>

namespace lineup::sound {

/// A whole turn, in radians.
inline constexpr double kTurn = 2 * std::numbers::pi;

}  // namespace lineup::sound
