#pragma once

#include "Tests/Support/GuardedBuffer.h"
#include "Tests/Support/Importer.h"
#include "Tests/Support/Oracle/Answers.h"
#include "Tests/Support/Samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

/// Requests for audio and peaks, compared with what the oracle says they write.
namespace test {

inline std::int32_t Play(const BarsAndToneInfo& settings, std::int64_t position, std::uint32_t count,
                         GuardedChannels& channels) {
    return Send(AudioRequest{.position = position,
                             .count = count,
                             .buffers = channels.Pointers(),
                             .privateData = nullptr,
                             .prefs = &settings});
}

/// The maxima and minima of one request.
struct Peaks {
    GuardedChannels maxima;
    GuardedChannels minima;

    explicit Peaks(std::size_t count) : maxima(oracle::kBuffers, count), minima(oracle::kBuffers, count) {}
};

inline std::int32_t Draw(const BarsAndToneInfo& settings, std::int64_t position, float peakRateHz, std::int32_t count,
                         Peaks& peaks) {
    return Send(PeakRequest{.position = position,
                            .peakRate = peakRateHz,
                            .count = count,
                            .maxima = peaks.maxima.Pointers(),
                            .minima = peaks.minima.Pointers(),
                            .privateData = nullptr,
                            .prefs = &settings});
}

/// The channels hold the answer, and what it does not write was left alone.
inline testing::AssertionResult Hold(const oracle::Answer& answer, GuardedChannels& channels) {
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        auto right = testing::AssertionSuccess();
        if (c >= answer.channels) {
            right = NeverWritten(channels[c]);
        } else if (!answer.samples.empty()) {
            right = SameSamples(channels[c].Samples(), answer.Of(c));
        } else {
            const auto samples = channels[c].Samples();
            for (const float sample : samples) {
                if (!answer.MayHold(sample)) {
                    right = testing::AssertionFailure() << "holds " << sample;
                }
            }
        }
        if (!right) {
            return right << ", channel " << c;
        }
    }
    return channels.GuardsIntact() ? testing::AssertionSuccess() : testing::AssertionFailure() << "a guard is written";
}

/// The minima of the clip's channels mirror or repeat the maxima, and the others were left alone.
inline testing::AssertionResult MinimaMatch(const BarsAndToneInfo& settings, bool waveform, Peaks& peaks) {
    for (std::size_t c = 0; c < oracle::kBuffers; ++c) {
        auto right = NeverWritten(peaks.minima[c]);
        if (c < oracle::ClipChannels(settings)) {
            right = waveform ? SameSamples(peaks.minima[c].Samples(), peaks.maxima[c].Samples())
                             : Opposite(peaks.maxima[c].Samples(), peaks.minima[c].Samples());
        }
        if (!right) {
            return right << ", minima of channel " << c;
        }
    }
    return peaks.minima.GuardsIntact() ? testing::AssertionSuccess()
                                       : testing::AssertionFailure() << "a guard of the minima is written";
}

inline testing::AssertionResult& About(const BarsAndToneInfo& settings, std::int64_t position, std::int64_t count,
                                       testing::AssertionResult& result) {
    return result << ", " << count << " from sample " << position << " at " << settings.sampleRate << " Hz of "
                  << settings.numChannels << " channels, ident " << settings.identifyChannels << '/'
                  << static_cast<std::uint32_t>(settings.identifierFormat) << ", " << settings.frequency << " Hz at "
                  << settings.amplitude;
}

/// An audio request is served and writes what the oracle says.
inline testing::AssertionResult PlaysTheAnswer(const BarsAndToneInfo& settings, std::int64_t position,
                                               std::uint32_t count) {
    GuardedChannels channels(oracle::kBuffers, count);
    const std::int32_t result = Play(settings, position, count, channels);
    auto right = result == 0 ? Hold(oracle::AnswerToAudio(settings, position, count), channels)
                             : testing::AssertionFailure() << "result " << result;
    return right ? right : About(settings, position, count, right);
}

/// A peak request is served and writes what the oracle says.
inline testing::AssertionResult DrawsTheAnswer(const BarsAndToneInfo& settings, std::int64_t position, float peakRateHz,
                                               std::int32_t count) {
    const auto size = static_cast<std::size_t>(count);
    Peaks peaks(size);
    const std::int32_t result = Draw(settings, position, peakRateHz, count, peaks);
    auto right = result == 0 ? Hold(oracle::AnswerToPeaks(settings, position, peakRateHz, size), peaks.maxima)
                             : testing::AssertionFailure() << "result " << result;
    if (right) {
        right = MinimaMatch(settings, oracle::IsDrawnAsWaveform(settings, peakRateHz), peaks);
    }
    return right ? right : About(settings, position, count, right) << ", peaks at " << peakRateHz << " Hz";
}

/// Every sequence, and the one after the last, at the size that it is made for or another.
inline std::vector<BarsAndToneInfo> EveryIdent(float rateHz = 48000.0F, std::uint32_t numChannels = 6) {
    std::vector<BarsAndToneInfo> all;
    for (std::uint32_t format = 0; format <= oracle::kIdents.size(); ++format) {
        all.push_back({.sampleRate = rateHz,
                       .numChannels = numChannels,
                       .identifyChannels = 1,
                       .identifierFormat = static_cast<IdentifierFormat>(format)});
    }
    return all;
}

/// Every sequence, and a steady tone.
inline std::vector<BarsAndToneInfo> EverySound(float rateHz = 48000.0F) {
    auto all = EveryIdent(rateHz);
    all.push_back({.sampleRate = rateHz, .numChannels = 6});
    return all;
}

}  // namespace test
