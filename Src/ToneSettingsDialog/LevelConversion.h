#pragma once

/// The level that the dialog shows for a linear gain: 20 log10(gain) in dB. Gains below 1e-15, silence
/// included, show as -300 dB; NaN stays NaN.
[[nodiscard]] float LevelDbFromGain(float gain);

/// The linear gain of a level in dB: 10 ^ (levelDb / 20).
[[nodiscard]] float GainFromLevelDb(float levelDb);
