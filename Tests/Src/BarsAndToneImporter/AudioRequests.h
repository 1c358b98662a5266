#pragma once

#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/GuardedBuffer.h"
#include "Tests/Support/Importer.h"
#include "Tests/Support/ReferenceTone.h"
#include "Tests/Support/Samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

/// Audio and peak requests with the settings in `prefs`, and what they are to give.
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

    Peaks(std::size_t channels, std::size_t count) : maxima(channels, count), minima(channels, count) {}
    [[nodiscard]] bool GuardsIntact() const { return maxima.GuardsIntact() && minima.GuardsIntact(); }
    void ExpectNeverWrittenFrom(std::size_t first) {
        for (std::size_t c = first; c < maxima.Size(); ++c) {
            EXPECT_TRUE(NeverWritten(maxima[c])) << "maxima of channel " << c;
            EXPECT_TRUE(NeverWritten(minima[c])) << "minima of channel " << c;
        }
    }
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

/// Settings that play an identification sequence.
inline BarsAndToneInfo Ident(std::uint32_t format, std::uint32_t numChannels) {
    return {
        .numChannels = numChannels, .identifyChannels = 1, .identifierFormat = static_cast<IdentifierFormat>(format)};
}

/// The steady tone of `settings` from sample `position` on.
inline std::vector<float> ExpectedTone(const BarsAndToneInfo& settings, std::int64_t position, std::size_t count) {
    const std::int64_t ticks = TicksPerSample(settings.sampleRate);
    return ReferenceTone(TimeOfSample(ticks, position), ticks, settings.frequency, settings.amplitude, count);
}

}  // namespace test
