#pragma once

#include "Src/ToneGenerator/ToneGenerator.h"
#include "Tests/Support/GuardedBuffer.h"
#include "Tests/Support/Oracle/IdentSamples.h"
#include "Tests/Support/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string>

/// Runs the generator on guarded buffers and compares it with the oracle.
namespace test {

/// Buffers are more than any sequence needs, so that writing to a channel too many shows.
inline constexpr std::size_t kBufferCount = 8;

inline std::string IdentName(const testing::TestParamInfo<oracle::Ident>& info) {
    return info.param.name;
}

/// The generator's answer, in `channels`: at least request.count samples each.
inline void Generate(const oracle::Ident& ident, const oracle::Request& request, GuardedChannels& channels) {
    const ToneGenerator generator(zelmediatypes::FrameRate(request.sampleTicks), 6);
    const zelmediatypes::TickTime start(request.startTicks);
    float** const buffers = channels.Pointers();
    switch (ident.format) {
        case EBUStereo1000:
            generator.GenerateEBUStereo(start, 1000.0F, buffers, 2, request.count, request.peakMode);
            break;
        case EBUStereo400:
            generator.GenerateEBUStereo(start, 400.0F, buffers, 2, request.count, request.peakMode);
            break;
        case EBUMultichannel:
            generator.GenerateEBUMultichannel(start, buffers, 6, request.count, request.peakMode);
            break;
        case BLITS5_1:
            generator.GenerateBLITS(start, buffers, 6, request.count, request.peakMode);
            break;
    }
}

/// The generator's answer in fresh buffers.
[[nodiscard]] inline GuardedChannels Generate(const oracle::Ident& ident, const oracle::Request& request) {
    GuardedChannels channels(kBufferCount, static_cast<std::size_t>(std::max<std::int64_t>(request.count, 0)));
    Generate(ident, request, channels);
    return channels;
}

/// The channels from `firstUnused` on and all guards are as they were.
[[nodiscard]] inline testing::AssertionResult NothingElseIsWritten(GuardedChannels& channels, std::size_t firstUnused) {
    for (std::size_t channel = firstUnused; channel < channels.Size(); ++channel) {
        if (auto untouched = NeverWritten(channels[channel]); !untouched) {
            return untouched << ", channel " << channel;
        }
    }
    return channels.GuardsIntact() ? testing::AssertionSuccess() : testing::AssertionFailure() << "a guard is written";
}

/// The generator's answer is the oracle's bit for bit, and nothing else is written.
[[nodiscard]] inline testing::AssertionResult IsTheOracles(const oracle::Ident& ident, const oracle::Request& request) {
    GuardedChannels got = Generate(ident, request);
    const auto expected = oracle::Render(ident, request);
    for (std::size_t channel = 0; channel < expected.size(); ++channel) {
        if (auto same = SameSamples(got[channel].Samples(), expected[channel]); !same) {
            return same << ", channel " << channel << ", " << ident.name << ", " << request;
        }
    }
    if (auto untouched = NothingElseIsWritten(got, expected.size()); !untouched) {
        return untouched << ", " << ident.name << ", " << request;
    }
    return testing::AssertionSuccess();
}

/// Sample `index` of a textbook sine at 48 kHz. The remainder is exact for multiples of half a hertz.
inline double TextbookSine(std::int64_t index, double frequencyHz, double level) {
    const double cycles = std::fmod(static_cast<double>(index) * frequencyHz, 48000.0) / 48000.0;
    return level * std::sin(2.0 * std::numbers::pi * cycles);
}

/// The samples are a textbook sine at 48 kHz from sample `first` on, as near as one piece comes to it.
[[nodiscard]] inline testing::AssertionResult IsTextbookSine(std::span<const float> samples, std::int64_t first,
                                                             double frequencyHz, double level) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double sine = TextbookSine(first + static_cast<std::int64_t>(i), frequencyHz, level);
        const double bound = oracle::Stray(frequencyHz / 48000.0 * static_cast<double>(i) + 1.0, level);
        if (!(std::abs(static_cast<double>(samples[i]) - sine) <= bound)) {
            return testing::AssertionFailure() << "sample " << i << " is " << samples[i] << ", a " << frequencyHz
                                               << " Hz tone would be " << sine << " within " << bound;
        }
    }
    return testing::AssertionSuccess();
}

}  // namespace test
