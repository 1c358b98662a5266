#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

/// The steady tone and its clock, written down a second time in the plainest way, for comparison.
namespace test {

inline constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();
inline constexpr double kTicksInASecond = 254016000000.0;

/// A double cut to 64 bits as x86-64 does it.
inline std::int64_t CutToInt64(double value) {
    return value >= -0x1p63 && value < 0x1p63 ? static_cast<std::int64_t>(value) : kInt64Min;
}

/// The ticks of one sample at a rate in Hz.
inline std::int64_t TicksPerSample(float rateHz) {
    return rateHz == 0.0F ? kInt64Max : CutToInt64(kTicksInASecond / static_cast<double>(rateHz));
}

/// The rate in Hz that the ticks of one sample stand for.
inline double RateOfTicks(std::int64_t ticks) {
    return ticks == kInt64Max ? 0.0 : kTicksInASecond / static_cast<double>(ticks);
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
    std::int64_t index = time / ticksPerSample;
    const std::int64_t rest = time % ticksPerSample;
    if (rest != 0 && (rest < 0) != (ticksPerSample < 0)) {
        --index;
    }
    return index;
}

/// `count` samples of a sine from clip time `time` on.
inline std::vector<float> ReferenceTone(std::int64_t time, std::int64_t ticksPerSample, float frequencyHz, float level,
                                        std::size_t count) {
    constexpr double kTwoPiAsFloat = 6.2831854820251465;
    const double cyclesPerSample = static_cast<double>(frequencyHz) / RateOfTicks(ticksPerSample);
    const double cycles = static_cast<double>(SampleAtTime(time, ticksPerSample)) * cyclesPerSample;
    double phase = (cycles - static_cast<double>(CutToInt64(cycles))) * kTwoPiAsFloat;
    std::vector<float> samples;
    for (std::size_t i = 0; i < count; ++i) {
        samples.push_back(static_cast<float>(std::sin(phase) * static_cast<double>(level)));
        phase += kTwoPiAsFloat * cyclesPerSample;
    }
    return samples;
}

}  // namespace test
