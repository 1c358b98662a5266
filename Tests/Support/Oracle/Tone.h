#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

/// What the plug-in sounds like, written down apart from it in the plainest way, for every test that compares samples.
/// Times are bare ticks.
namespace oracle {

inline constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();
inline constexpr std::int64_t kTicksPerSecond = 254016000000;
inline constexpr std::int64_t kTicksAt48kHz = 5292000;  // a sample's

/// A double cut to 64 bits as x86-64 does it.
inline std::int64_t CutToInt64(double value) {
    return value >= -0x1p63 && value < 0x1p63 ? static_cast<std::int64_t>(value) : kInt64Min;
}

/// The ticks of one sample at a rate in Hz.
inline std::int64_t TicksPerSample(float rateHz) {
    return rateHz == 0.0F ? kInt64Max : CutToInt64(static_cast<double>(kTicksPerSecond) / static_cast<double>(rateHz));
}

/// The rate in Hz that the ticks of one sample stand for.
inline double RateOfTicks(std::int64_t ticks) {
    return ticks == kInt64Max ? 0.0 : static_cast<double>(kTicksPerSecond) / static_cast<double>(ticks);
}

/// The clip time in ticks of sample `position`; wraps.
inline std::int64_t TimeOfSample(std::int64_t ticksPerSample, std::int64_t position) {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(ticksPerSample) * static_cast<std::uint64_t>(position));
}

/// The index of the sample that begins at or last before `time`.
inline std::int64_t SampleAtTime(std::int64_t time, std::int64_t ticksPerSample) {
    if (ticksPerSample == 0) {
        return 0;
    }
    if (ticksPerSample == -1) {
        return static_cast<std::int64_t>(0U - static_cast<std::uint64_t>(time));
    }
    const std::int64_t index = time / ticksPerSample;
    return time % ticksPerSample != 0 && (time < 0) != (ticksPerSample < 0) ? index - 1 : index;
}

/// `count` samples of a sine whose first one has the phase of clip time `time`: the plug-in's operations in their
/// order, so that the bits are the same. Its 2 pi is the single-precision one.
inline std::vector<float> Tone(std::int64_t time, std::int64_t ticksPerSample, double frequencyHz, double level,
                               std::size_t count) {
    constexpr double kTwoPiAsFloat = 6.2831854820251465;
    const double cyclesPerSample = frequencyHz / RateOfTicks(ticksPerSample);
    const double cycles = static_cast<double>(SampleAtTime(time, ticksPerSample)) * cyclesPerSample;
    double phase = (cycles - static_cast<double>(CutToInt64(cycles))) * kTwoPiAsFloat;
    std::vector<float> samples(count);
    for (float& sample : samples) {
        sample = static_cast<float>(std::sin(phase) * level);
        phase += kTwoPiAsFloat * cyclesPerSample;
    }
    return samples;
}

/// How far the sample after `cycles` cycles of one piece may stray from a textbook sine: that 2 pi is too large by
/// 1.7485e-7, and each sample is rounded.
inline double Stray(double cycles, double level) {
    return level * (1.7485e-7 * cycles + 1e-7);
}

}  // namespace oracle
