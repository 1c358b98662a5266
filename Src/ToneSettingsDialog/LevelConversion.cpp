#include "Src/ToneSettingsDialog/LevelConversion.h"

#include <cmath>

namespace {

constexpr float kSmallestGain = 1e-15F;  // -300 dB
constexpr float kDbPerDecade = 20.0F;    // of amplitude

}  // namespace

float LevelDbFromGain(float gain) {
    const float shown = gain < kSmallestGain ? kSmallestGain : gain;
    return static_cast<float>(static_cast<double>(kDbPerDecade) * std::log10(static_cast<double>(shown)));
}

float GainFromLevelDb(float levelDb) {
    const float decades = levelDb / kDbPerDecade;
    return static_cast<float>(std::pow(10.0, static_cast<double>(decades)));
}
