// Numbers no dialog makes: every request ends, writes nothing outside what was asked for, and steady tones
// are still exactly what the plain loop gives.
#include "Tests/Src/BarsAndToneImporter/HostileRequests.h"
#include "Tests/Support/GuardedBuffer.h"
#include "Tests/Support/Importer.h"
#include "Tests/Support/ReferenceTone.h"
#include "Tests/Support/Samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace {

using test::GuardedBuffer;
using test::GuardedChannels;
using test::HostileRequest;
using test::kHostileChannels;
using test::NeverWritten;
using test::Opposite;
using test::SameSamples;

bool PlaysIdent(const HostileRequest& request) {
    return request.settings.identifyChannels == 1;
}

std::size_t ClipChannels(const HostileRequest& request) {
    const std::uint32_t count = request.settings.numChannels;
    return count <= kHostileChannels ? count : 0;  // the others are negative
}

// The first channel that a request must leave alone.
std::size_t ChannelsWritten(const HostileRequest& request) {
    if (!PlaysIdent(request)) {
        return ClipChannels(request);
    }
    switch (request.settings.identifierFormat) {
        case EBUStereo1000:
        case EBUStereo400:
            return 2;
        case EBUMultichannel:
        case BLITS5_1:
            return 6;
        default:
            return 0;
    }
}

std::vector<float> Tone(const HostileRequest& request, float stepRateHz) {
    return test::ReferenceTone(test::TimeOfSample(test::TicksPerSample(request.settings.sampleRate), request.position),
                               test::TicksPerSample(stepRateHz), request.settings.frequency, request.settings.amplitude,
                               static_cast<std::size_t>(request.count));
}

// What an ident may leave in a sample: nothing, or a sine no louder than its level. A wrapped time may
// give a sine of no number.
testing::AssertionResult IsIdentAudio(GuardedBuffer& channel) {
    for (const float sample : channel.Samples()) {
        if (std::abs(sample) > 0.125F) {
            return testing::AssertionFailure() << "holds " << sample;
        }
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult IsIdentPeaks(GuardedBuffer& channel) {
    for (const float sample : channel.Samples()) {
        if (!test::IsUnwritten(sample) && sample != 0.125F && sample != 0.0625F && sample != 0.0F) {
            return testing::AssertionFailure() << "holds " << sample;
        }
    }
    return testing::AssertionSuccess();
}

void CheckAudio(const HostileRequest& request) {
    GuardedChannels channels(kHostileChannels, static_cast<std::size_t>(request.count));
    ASSERT_EQ(test::Send(test::AudioRequest{.position = request.position,
                                            .count = static_cast<std::uint32_t>(request.count),
                                            .buffers = channels.Pointers(),
                                            .privateData = nullptr,
                                            .prefs = &request.settings}),
              0);
    const auto tone = PlaysIdent(request) ? std::vector<float>() : Tone(request, request.settings.sampleRate);
    for (std::size_t c = 0; c < kHostileChannels; ++c) {
        if (c >= ChannelsWritten(request)) {
            ASSERT_TRUE(NeverWritten(channels[c])) << "channel " << c;
        } else if (PlaysIdent(request)) {
            ASSERT_TRUE(IsIdentAudio(channels[c])) << "channel " << c;
        } else {
            ASSERT_TRUE(SameSamples(channels[c].Samples(), tone)) << "channel " << c;
        }
    }
    ASSERT_TRUE(channels.GuardsIntact());
}

void CheckIdentPeaks(const HostileRequest& request, GuardedChannels& maxima, GuardedChannels& minima) {
    for (std::size_t c = 0; c < kHostileChannels; ++c) {
        if (c < ChannelsWritten(request)) {
            ASSERT_TRUE(IsIdentPeaks(maxima[c])) << "maxima of channel " << c;
        } else {
            ASSERT_TRUE(NeverWritten(maxima[c])) << "maxima of channel " << c;
        }
        if (c < ClipChannels(request)) {
            ASSERT_TRUE(Opposite(maxima[c].Samples(), minima[c].Samples())) << "minima of channel " << c;
        } else {
            ASSERT_TRUE(NeverWritten(minima[c])) << "minima of channel " << c;
        }
    }
}

void CheckTonePeaks(const HostileRequest& request, GuardedChannels& maxima, GuardedChannels& minima) {
    const double peakRateHz = test::RateOfTicks(test::TicksPerSample(request.peakRateHz));
    const bool waveform = static_cast<double>(request.settings.frequency) < peakRateHz;
    const auto tone = waveform
                          ? Tone(request, request.peakRateHz)
                          : std::vector<float>(static_cast<std::size_t>(request.count), request.settings.amplitude);
    for (std::size_t c = 0; c < kHostileChannels; ++c) {
        if (c >= ClipChannels(request)) {
            ASSERT_TRUE(NeverWritten(maxima[c])) << "maxima of channel " << c;
            ASSERT_TRUE(NeverWritten(minima[c])) << "minima of channel " << c;
            continue;
        }
        ASSERT_TRUE(SameSamples(maxima[c].Samples(), tone)) << "maxima of channel " << c;
        if (waveform) {
            ASSERT_TRUE(SameSamples(minima[c].Samples(), tone)) << "minima of channel " << c;
        } else {
            ASSERT_TRUE(Opposite(maxima[c].Samples(), minima[c].Samples())) << "minima of channel " << c;
        }
    }
}

void CheckPeaks(const HostileRequest& request) {
    const auto size = static_cast<std::size_t>(request.count);
    GuardedChannels maxima(kHostileChannels, size);
    GuardedChannels minima(kHostileChannels, size);
    ASSERT_EQ(test::Send(test::PeakRequest{.position = request.position,
                                           .peakRate = request.peakRateHz,
                                           .count = request.count,
                                           .maxima = maxima.Pointers(),
                                           .minima = minima.Pointers(),
                                           .privateData = nullptr,
                                           .prefs = &request.settings}),
              0);
    PlaysIdent(request) ? CheckIdentPeaks(request, maxima, minima) : CheckTonePeaks(request, maxima, minima);
    ASSERT_TRUE(maxima.GuardsIntact());
    ASSERT_TRUE(minima.GuardsIntact());
}

void Check(const HostileRequest& request) {
    SCOPED_TRACE(request);
    CheckAudio(request);
    CheckPeaks(request);
}

// Every ident, and the steady tone as a sixth.
std::vector<BarsAndToneInfo> EverySetting(float rateHz) {
    std::vector<BarsAndToneInfo> settings = {{.sampleRate = rateHz, .numChannels = 6}};
    for (std::uint32_t format = 0; format <= 4; ++format) {
        settings.push_back({.sampleRate = rateHz,
                            .numChannels = 6,
                            .identifyChannels = 1,
                            .identifierFormat = static_cast<IdentifierFormat>(format)});
    }
    return settings;
}

TEST(HostileRequests, AtEveryRateWithEverySetting) {
    for (const float rateHz : test::kHostileFloats) {
        for (const BarsAndToneInfo& settings : EverySetting(rateHz)) {
            for (const std::int64_t position : {std::int64_t{0}, std::int64_t{131990}, std::int64_t{-20}}) {
                Check({.settings = settings, .position = position, .peakRateHz = rateHz, .count = 40});
            }
        }
    }
}

TEST(HostileRequests, AtEveryPositionWithEverySetting) {
    for (const std::int64_t position : test::kHostilePositions) {
        for (const float rateHz : {48000.0F, 44100.0F, 1.0F, 1e-5F}) {
            for (const BarsAndToneInfo& settings : EverySetting(rateHz)) {
                Check({.settings = settings, .position = position, .peakRateHz = 100.0F, .count = 150});
            }
        }
    }
}

TEST(HostileRequests, WithEveryFrequencyAndLevel) {
    for (const float frequencyHz : test::kHostileFloats) {
        for (const float level : test::kHostileFloats) {
            Check({.settings = {.numChannels = 2, .frequency = frequencyHz, .amplitude = level},
                   .position = 1234,
                   .peakRateHz = 2000.0F,
                   .count = 20});
        }
    }
}

TEST(HostileRequests, AtEveryPeakRateWithEverySetting) {
    for (const float peakRateHz : test::kHostileFloats) {
        for (const BarsAndToneInfo& settings : EverySetting(48000.0F)) {
            Check({.settings = settings, .position = 131000, .peakRateHz = peakRateHz, .count = 300});
        }
    }
}

TEST(HostileRequests, DrawnByLot) {
    test::HostileRequestSource source(20240229);
    for (int i = 0; i < 4000; ++i) {
        Check(source.Next());
        if (HasFatalFailure()) {
            FAIL() << "request " << i;
        }
    }
}

TEST(HostileRequests, OfThousandsOfSamplesEndWhereTimeWraps) {
    // The last samples before the clip time wraps, at 48000 Hz, and the first after it.
    const std::int64_t last = std::numeric_limits<std::int64_t>::max() / 5292000;
    for (const BarsAndToneInfo& settings : EverySetting(48000.0F)) {
        Check({.settings = settings, .position = last - 2500, .peakRateHz = 48000.0F, .count = 5000});
        Check({.settings = settings, .position = -last - 2500, .peakRateHz = 48000.0F, .count = 5000});
    }
}

}  // namespace
