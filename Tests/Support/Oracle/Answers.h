#pragma once

#include "Tests/Support/Oracle/IdentSamples.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// What requests for sound are to write.
namespace oracle {

/// Buffers to hand over: more than any sequence writes, and than any clip has that these answers are for.
inline constexpr std::size_t kBuffers = 8;

/// The clip's own channels; none where the count is negative as an int.
inline std::size_t ClipChannels(const BarsAndToneInfo& settings) {
    return settings.numChannels <= kBuffers ? settings.numChannels : 0;
}

/// The samples that one request writes.
struct Answer {
    std::size_t channels = 0;  ///< that are written: all of a clip with a steady tone, those of its own of a sequence
    bool isPeaks = false;
    /// Of each channel, or one for all of them. Empty for a sequence at times that wrap: of those only the levels are
    /// known.
    std::vector<std::vector<float>> samples{};

    [[nodiscard]] const std::vector<float>& Of(std::size_t channel) const {
        return samples.size() == 1 ? samples.front() : samples.at(channel);
    }
    /// Whether a sequence may hold `value`. A wrapped time may give a sine that is NaN.
    [[nodiscard]] bool MayHold(float value) const {
        return isPeaks ? value == 0.125F || value == 0.0625F || value == 0.0F : !(std::abs(value) > 0.125F);
    }
};

/// Whether no time of `count` samples, nor of the cycle round it, wraps.
inline bool FitsTheClock(std::int64_t ticks, std::int64_t position, std::int64_t step, std::int64_t count) {
    constexpr double kMost = 0x1p63 - 30.0 * static_cast<double>(kTicksPerSecond);
    const double start = static_cast<double>(ticks) * static_cast<double>(position);
    const double end = start + static_cast<double>(step) * static_cast<double>(count);
    return step >= 0 && std::abs(start) < kMost && std::abs(end) < kMost && static_cast<double>(step) < kMost;
}

/// `count` samples of a clip, one each `step` ticks from sample `position` of the clip on; in peak mode the levels.
inline Answer AnswerTo(const BarsAndToneInfo& settings, std::int64_t position, std::int64_t step, std::size_t count,
                       bool peakMode) {
    const std::int64_t ticks = TicksPerSample(settings.sampleRate);
    const std::int64_t start = TimeOfSample(ticks, position);
    if (settings.identifyChannels != 1) {
        auto samples = peakMode ? std::vector<float>(count, settings.amplitude)
                                : Tone(start, step, static_cast<double>(settings.frequency),
                                       static_cast<double>(settings.amplitude), count);
        return {.channels = ClipChannels(settings), .isPeaks = peakMode, .samples = {std::move(samples)}};
    }
    const Ident* const ident = IdentOf(settings);
    if (ident == nullptr) {
        return {.channels = 0, .isPeaks = peakMode};
    }
    Answer answer{.channels = ident->channels, .isPeaks = peakMode};
    if (FitsTheClock(ticks, position, step, static_cast<std::int64_t>(count))) {
        answer.samples = Render(*ident, {step, start, static_cast<std::int64_t>(count), peakMode});
    }
    return answer;
}

inline Answer AnswerToAudio(const BarsAndToneInfo& settings, std::int64_t position, std::size_t count) {
    return AnswerTo(settings, position, TicksPerSample(settings.sampleRate), count, false);
}

/// A steady tone below the peak rate is drawn as a waveform, minimum equal to maximum; what is not, as a band.
inline bool IsDrawnAsWaveform(const BarsAndToneInfo& settings, float peakRateHz) {
    return settings.identifyChannels != 1 &&
           static_cast<double>(settings.frequency) < RateOfTicks(TicksPerSample(peakRateHz));
}

/// The maxima of a request for peaks.
inline Answer AnswerToPeaks(const BarsAndToneInfo& settings, std::int64_t position, float peakRateHz,
                            std::size_t count) {
    return AnswerTo(settings, position, TicksPerSample(peakRateHz), count, !IsDrawnAsWaveform(settings, peakRateHz));
}

}  // namespace oracle
