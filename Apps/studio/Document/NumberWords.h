#pragma once

#include <QString>

namespace studio {

/// A number with so many decimals, with a true minus sign, and without one before 0.
[[nodiscard]] QString SignedNumber(double value, int decimals);

/// 0.75 as "75.0 %".
[[nodiscard]] QString Percent(float value);

}  // namespace studio
