#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>

namespace lineup::validation {

namespace {

constexpr std::array kPeakRatesHz = {25.0F, 100.0F, 999.0F, 1000.0F, 2000.0F, 48000.0F};

// A tone below the peak rate is one line; everything else is a band about zero.
bool IsLine(const Sound& sound, float peakRateHz) {
    return !sound.IsIdent() && sound.settings.frequency < peakRateHz;
}

// Each peak's band holds the audio of its time, no more and no less: a crest comes near its edge.
bool IsBandOf(std::span<const float> audio, float maximum, float minimum) {
    constexpr float kNear = 0.98F;  // a cycle of 24 samples or more comes nearer than that
    float loudest = 0;
    for (const float sample : audio) {
        loudest = std::max(loudest, std::abs(sample));
    }
    return minimum == -maximum && loudest <= maximum && loudest >= kNear * maximum;
}

// Peaks of 10 ms from `position` on, a whole number of which make up every step of a sequence.
void RequireBands(const RawImporter& plugin, const Sound& sound, std::int64_t position, std::int32_t count) {
    constexpr std::uint32_t kSamplesAPeak = 480;
    const PeakStretch stretch{.position = position, .rateHz = 100.0F, .count = count};
    const Peaks peaks = ReadPeaks(plugin, AsTestClip(sound), stretch);
    const Samples audio = ReadAudio(plugin, AsTestClip(sound),
                                    {.position = position, .count = static_cast<std::uint32_t>(count) * kSamplesAPeak});
    for (std::size_t c = 0; c < sound.channels; ++c) {
        for (std::size_t i = 0; i < peaks.maxima[c].size(); ++i) {
            const auto audioOfPeak = std::span(audio[c]).subspan(i * kSamplesAPeak, kSamplesAPeak);
            if (!IsBandOf(audioOfPeak, peaks.maxima[c][i], peaks.minima[c][i])) {
                Fail("{} of {}: channel {}, peak {} is {} to {}, the audio of its time reaches from {} to {}",
                     Text(stretch), sound.name, c, i, peaks.minima[c][i], peaks.maxima[c][i],
                     std::ranges::min(audioOfPeak), std::ranges::max(audioOfPeak));
            }
        }
    }
}

// At the clip's own rate a tone's peaks are its samples.
void RequireLine(const RawImporter& plugin, const Sound& sound, const Stretch& stretch) {
    const PeakStretch peakStretch{.position = stretch.position,
                                  .rateHz = sound.settings.sampleRate,
                                  .count = static_cast<std::int32_t>(stretch.count)};
    const Peaks peaks = ReadPeaks(plugin, AsTestClip(sound), peakStretch);
    Require(peaks.maxima == ReadAudio(plugin, AsTestClip(sound), stretch), "{} of {} are not its samples",
            Text(peakStretch), sound.name);
    Require(peaks.minima == peaks.maxima, "{} of {} are not one line", Text(peakStretch), sound.name);
}

// The kind of drawing changes where the peak rate passes the tone's frequency, and at it is a band still.
void RequireKind(const RawImporter& plugin, const Sound& sound, float rateHz) {
    const PeakStretch stretch{.position = 0, .rateHz = rateHz, .count = 200};
    const Peaks peaks = ReadPeaks(plugin, AsTestClip(sound), stretch);
    const bool line = IsLine(sound, rateHz);
    for (std::size_t c = 0; c < sound.channels; ++c) {
        for (std::size_t i = 0; i < peaks.maxima[c].size(); ++i) {
            const float maximum = peaks.maxima[c][i];
            const bool isBand = maximum == sound.settings.amplitude && peaks.minima[c][i] == -maximum;
            if (line ? peaks.minima[c][i] != maximum : !isBand) {
                Fail("{} of {}: channel {}, peak {} is {} to {}, not a {}", Text(stretch), sound.name, c, i,
                     peaks.minima[c][i], maximum, line ? "line" : "band of the tone's level");
            }
        }
    }
}

void CheckPeaksMatchAudio(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    for (const Sound& sound : Sounds()) {
        const auto tenths = static_cast<std::int64_t>(examination.Below(1000));
        RequireBands(plugin, sound, 0, static_cast<std::int32_t>(sound.CycleSamples() / 480));
        RequireBands(plugin, sound, (tenths - 500) * 4800, 200);
        if (!sound.IsIdent()) {
            for (const float rateHz : kPeakRatesHz) {
                RequireKind(plugin, sound, rateHz);
            }
            const auto position = static_cast<std::int64_t>(examination.Below(1000000));
            RequireLine(plugin, sound, {.position = position, .count = 5000});
        }
    }
}

}  // namespace

std::span<const Promise> ClipPeakPromises() {
    static constexpr std::array kRows = {
        Promise{"peaks-match-audio", "Peaks enclose the audio of their time, and no more.", CheckPeaksMatchAudio},
    };
    return kRows;
}

}  // namespace lineup::validation
