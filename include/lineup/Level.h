#pragma once

#include <algorithm>
#include <cmath>

namespace lineup {

/// The level that stands for silence, dBFS: chosen for a tone, its gain is 0.
inline constexpr double kSilenceDb = -300;

/// The linear gain of a level in dBFS; 0 dBFS is 1.0.
inline double GainFromDb(double levelDb) {
    return std::pow(10.0, levelDb / 20);
}

/// The level in dBFS of a linear gain, kSilenceDb for anything quieter than that.
inline double DbFromGain(double gain) {
    return std::max(kSilenceDb, 20 * std::log10(std::max(gain, 0.0)));
}

}  // namespace lineup
