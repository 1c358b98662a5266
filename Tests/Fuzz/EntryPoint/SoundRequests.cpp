#include "Tests/Fuzz/EntryPoint/Session.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Support/GuardedBuffer.h"
#include "Tests/Support/Importer.h"
#include "Tests/Support/Oracle/Answers.h"

namespace fuzz {

namespace {

using oracle::kBuffers;
using test::GuardedChannels;

constexpr std::size_t kMostSamples = 400;

void RequireUntouchedFrom(GuardedChannels& channels, std::size_t first) {
    for (std::size_t c = 0; c < channels.Size(); ++c) {
        Require(c < first || channels[c].UnwrittenSamples() == channels[c].Samples().size(),
                "a channel that the sound does not have is left alone");
    }
    Require(channels.GuardsIntact(), "nothing is written before or behind a buffer");
}

void RequireAnswer(const oracle::Answer& answer, GuardedChannels& channels) {
    RequireUntouchedFrom(channels, answer.channels);
    for (std::size_t c = 0; c < answer.channels; ++c) {
        for (std::size_t i = 0; i < channels[c].Samples().size(); ++i) {
            const float sample = channels[c][i];
            Require(answer.samples.empty() ? answer.MayHold(sample) : test::SameSample(sample, answer.Of(c)[i]),
                    "samples are the oracle's");
        }
    }
}

void RequireMinima(const BarsAndToneInfo& settings, bool waveform, GuardedChannels& maxima, GuardedChannels& minima) {
    RequireUntouchedFrom(minima, oracle::ClipChannels(settings));
    for (std::size_t c = 0; c < oracle::ClipChannels(settings); ++c) {
        for (std::size_t i = 0; i < minima[c].Samples().size(); ++i) {
            Require(
                waveform ? test::SameSample(maxima[c][i], minima[c][i]) : test::IsOpposite(maxima[c][i], minima[c][i]),
                "minima are the maxima, or those times -1");
        }
    }
}

}  // namespace

void Session::ReadAudio() {
    const RequestSettings settings = TakeRequestSettings();
    const std::int64_t position = mBytes.Position();
    const std::size_t count = mBytes.Take<std::uint16_t>() % (kMostSamples + 1);
    GuardedChannels audio(kBuffers, count);
    test::RequestRecord record(test::kAudioRecordSize, TakePlacement());
    record.Put(0, position).Put(8, static_cast<std::uint32_t>(count)).Put(12, audio.Pointers());
    record.Put(20, settings.privateData).Put(28, settings.prefs);
    const std::int32_t result = test::Request(kImportAudio, nullptr, record.Data());
    Require(record.IsUntouched(), "an audio request only reads its record");
    if (settings.prefs == nullptr && settings.privateData == nullptr) {
        Require(result == 5, "audio without settings is refused");
        RequireUntouchedFrom(audio, 0);
        return;
    }
    Require(result == 0, "audio is served");
    RequireAnswer(oracle::AnswerToAudio(settings.used, position, count), audio);
}

void Session::ReadPeaks() {
    const RequestSettings settings = TakeRequestSettings();
    const std::int64_t position = mBytes.Position();
    const float peakRateHz = mBytes.Float();
    const bool negative = mBytes.Below(16) == 0;
    const std::size_t count = mBytes.Take<std::uint16_t>() % (kMostSamples + 1);
    GuardedChannels maxima(kBuffers, count);
    GuardedChannels minima(kBuffers, count);
    test::RequestRecord record(test::kPeakRecordSize, TakePlacement());
    record.Put(0, settings.privateData).Put(8, settings.prefs).Put(16, position).Put(24, peakRateHz);
    record.Put(28, static_cast<std::int32_t>(count) * (negative ? -1 : 1));
    record.Put(32, maxima.Pointers()).Put(40, minima.Pointers());
    const std::int32_t result = test::Request(kImportPeakAudio, nullptr, record.Data());
    Require(record.IsUntouched(), "a peak request only reads its record");
    const bool served = settings.prefs != nullptr || settings.privateData != nullptr;
    Require(result == (served ? 0 : 5), "peaks are served where there are settings");
    if (!served || negative) {
        RequireUntouchedFrom(maxima, 0);
        RequireUntouchedFrom(minima, 0);
        return;
    }
    RequireAnswer(oracle::AnswerToPeaks(settings.used, position, peakRateHz, count), maxima);
    RequireMinima(settings.used, oracle::IsDrawnAsWaveform(settings.used, peakRateHz), maxima, minima);
}

}  // namespace fuzz
