#include "Tests/Fuzz/EntryPoint/Session.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Support/GuardedBuffer.h"
#include "Tests/Support/Importer.h"
#include "Tests/Support/ReferenceTone.h"

#include <bit>
#include <cmath>

namespace fuzz {

namespace {

using test::GuardedChannels;
using test::kHostileChannels;

constexpr std::size_t kMostSamples = 400;

// A steady tone is checked sample by sample against the plain loop; an ident by what its samples can be.
struct Expected {
    const BarsAndToneInfo& settings;
    std::int64_t time;   // ticks
    std::int64_t ticks;  // a sample
    std::size_t count;

    [[nodiscard]] bool PlaysIdent() const { return settings.identifyChannels == 1; }

    [[nodiscard]] std::size_t ClipChannels() const {
        return settings.numChannels <= kHostileChannels ? settings.numChannels : 0;  // the others are negative
    }

    // Sequences write the channels that they are made for, whatever the clip has.
    [[nodiscard]] std::size_t ChannelsWritten() const {
        if (!PlaysIdent()) {
            return ClipChannels();
        }
        switch (settings.identifierFormat) {
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

    [[nodiscard]] std::vector<float> Tone() const {
        return test::ReferenceTone(time, ticks, settings.frequency, settings.amplitude, count);
    }
};

bool Same(float a, float b) {
    const bool bothNumbers = !std::isnan(a) || !std::isnan(b);
    return bothNumbers ? std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b)
                       : test::IsUnwritten(a) == test::IsUnwritten(b);
}

void RequireOpposite(test::GuardedBuffer& maxima, test::GuardedBuffer& minima) {
    for (std::size_t i = 0; i < maxima.Samples().size(); ++i) {
        const bool opposite =
            std::isnan(maxima[i]) ? std::isnan(minima[i]) && !test::IsUnwritten(minima[i]) : minima[i] == -maxima[i];
        Require(opposite, "minima are the maxima times -1");
    }
}

void RequireSame(test::GuardedBuffer& buffer, const std::vector<float>& samples) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        Require(Same(buffer[i], samples[i]), "a steady tone is what the plain loop gives");
    }
}

void RequireUntouchedFrom(GuardedChannels& channels, std::size_t first) {
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        Require(c < first || channels[c].UnwrittenSamples() == channels[c].Samples().size(),
                "a channel that the sound does not have is left alone");
    }
    Require(channels.GuardsIntact(), "nothing is written before or behind a buffer");
}

void RequireIdentAudio(test::GuardedBuffer& channel) {
    for (const float sample : channel.Samples()) {
        Require(!(std::abs(sample) > 0.125F), "an ident is no louder than its level");
    }
}

void RequireIdentPeaks(test::GuardedBuffer& channel) {
    for (const float sample : channel.Samples()) {
        Require(test::IsUnwritten(sample) || sample == 0.125F || sample == 0.0625F || sample == 0.0F,
                "an ident's peak is a level of the sequence");
    }
}

void RequireAudio(const Expected& expected, GuardedChannels& audio) {
    RequireUntouchedFrom(audio, expected.ChannelsWritten());
    const auto tone = expected.PlaysIdent() ? std::vector<float>() : expected.Tone();
    for (std::size_t c = 0; c < expected.ChannelsWritten(); ++c) {
        expected.PlaysIdent() ? RequireIdentAudio(audio[c]) : RequireSame(audio[c], tone);
    }
}

// The step of `expected` is a peak value's.
void RequirePeaks(const Expected& expected, GuardedChannels& maxima, GuardedChannels& minima) {
    RequireUntouchedFrom(maxima, expected.ChannelsWritten());
    RequireUntouchedFrom(minima, expected.ClipChannels());
    if (expected.PlaysIdent()) {
        for (std::size_t c = 0; c < expected.ChannelsWritten(); ++c) {
            RequireIdentPeaks(maxima[c]);
        }
        for (std::size_t c = 0; c < expected.ClipChannels(); ++c) {
            RequireOpposite(maxima[c], minima[c]);
        }
        return;
    }
    const bool waveform = static_cast<double>(expected.settings.frequency) < test::RateOfTicks(expected.ticks);
    const auto tone = waveform ? expected.Tone() : std::vector<float>(expected.count, expected.settings.amplitude);
    for (std::size_t c = 0; c < expected.ClipChannels(); ++c) {
        RequireSame(maxima[c], tone);
        waveform ? RequireSame(minima[c], tone) : RequireOpposite(maxima[c], minima[c]);
    }
}

}  // namespace

void Session::ReadAudio() {
    const RequestSettings settings = TakeRequestSettings();
    const std::int64_t position = mBytes.Position();
    const std::size_t count = mBytes.Take<std::uint16_t>() % (kMostSamples + 1);
    GuardedChannels audio(kHostileChannels, count);
    test::RequestRecord record(test::kAudioRecordSize, TakePlacement());
    record.Put(0, position).Put(8, static_cast<std::uint32_t>(count)).Put(12, audio.Pointers());
    record.Put(20, settings.privateData).Put(28, settings.prefs);
    const std::int32_t result = test::Request(kImportAudio, nullptr, record.Data());
    Require(record.Untouched(), "an audio request only reads its record");
    if (settings.prefs == nullptr && settings.privateData == nullptr) {
        Require(result == 5, "audio without settings is refused");
        RequireUntouchedFrom(audio, 0);
        return;
    }
    Require(result == 0, "audio is served");
    const std::int64_t ticks = test::TicksPerSample(settings.used.sampleRate);
    RequireAudio({settings.used, test::TimeOfSample(ticks, position), ticks, count}, audio);
}

void Session::ReadPeaks() {
    const RequestSettings settings = TakeRequestSettings();
    const std::int64_t position = mBytes.Position();
    const float peakRateHz = mBytes.Float();
    const bool negative = mBytes.Below(16) == 0;
    const std::size_t count = mBytes.Take<std::uint16_t>() % (kMostSamples + 1);
    GuardedChannels maxima(kHostileChannels, count);
    GuardedChannels minima(kHostileChannels, count);
    test::RequestRecord record(test::kPeakRecordSize, TakePlacement());
    record.Put(0, settings.privateData).Put(8, settings.prefs).Put(16, position).Put(24, peakRateHz);
    record.Put(28, static_cast<std::int32_t>(count) * (negative ? -1 : 1));
    record.Put(32, maxima.Pointers()).Put(40, minima.Pointers());
    const std::int32_t result = test::Request(kImportPeakAudio, nullptr, record.Data());
    Require(record.Untouched(), "a peak request only reads its record");
    const bool served = settings.prefs != nullptr || settings.privateData != nullptr;
    Require(result == (served ? 0 : 5), "peaks are served where there are settings");
    if (!served || negative) {
        RequireUntouchedFrom(maxima, 0);
        RequireUntouchedFrom(minima, 0);
        return;
    }
    const std::int64_t time = test::TimeOfSample(test::TicksPerSample(settings.used.sampleRate), position);
    RequirePeaks({settings.used, time, test::TicksPerSample(peakRateHz), count}, maxima, minima);
}

}  // namespace fuzz
