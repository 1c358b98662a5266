#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Checks.h"
#include "Host/Lineup/Validation/HostileNumbers.h"
#include "Host/Lineup/Validation/Requests.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

namespace lineup::validation {

namespace {

constexpr int kRequests = 4000;
constexpr double kIdentLevel = 0.125;

// Numbers that mean nothing may make samples that are no numbers, but none that are too loud.
void RequireNoLouder(const GuardedBuffers& buffers, std::size_t channels, double level, const std::string& what) {
    for (std::size_t c = 0; c < channels; ++c) {
        const std::span<const float> samples = buffers.Channel(c);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const bool louder = std::abs(static_cast<double>(samples[i])) > level;
            Require(!louder, "{}: channel {}, sample {} is {}, beyond the level of {}", what, c, i, samples[i], level);
        }
    }
}

double LevelOf(const BarsAndToneInfo& settings) {
    if (settings.identifyChannels == 1) {
        return kIdentLevel;
    }
    const double level = std::abs(static_cast<double>(settings.amplitude));
    return std::isnan(level) ? std::numeric_limits<double>::infinity() : level;
}

// A steady tone is written whole whatever its numbers; of a sequence whose times wrap, not even that is
// promised.
void RequireHarmless(const GuardedBuffers& buffers, const BarsAndToneInfo& settings, std::size_t channels,
                     const std::string& what) {
    if (settings.identifyChannels != 1) {
        buffers.RequireWritten(channels, what);
    }
    RequireNoLouder(buffers, channels, LevelOf(settings), what);
    buffers.RequireUntouchedFrom(channels, what);
}

std::int32_t DrawCount(Examination& examination) {
    return static_cast<std::int32_t>(examination.Below(16) == 0 ? examination.Below(3001) : examination.Below(64));
}

void RequireHarmlessAudio(const RawImporter& plugin, const BarsAndToneInfo& settings, const Stretch& stretch) {
    GuardedRecord<BarsAndToneInfo> prefs(settings, kPlacements.back());
    GuardedBuffers buffers(kMostChannels, stretch.count);
    const std::int32_t result = SendAudio(plugin, {.prefs = prefs.Data()}, stretch, buffers);
    const std::string what = fmt::format("{} with {}", Text(stretch), Text(settings));
    Require(result == kImportNoError, "{} is answered with {} instead of 0", what, result);
    prefs.RequireUnchanged("the settings of " + what);
    RequireHarmless(buffers, settings, ChannelsWritten(settings), what);
}

void RequireHarmlessPeaks(const RawImporter& plugin, const BarsAndToneInfo& settings, const PeakStretch& stretch) {
    GuardedRecord<BarsAndToneInfo> prefs(settings, kPlacements.back());
    const std::size_t size = stretch.count > 0 ? static_cast<std::size_t>(stretch.count) : 0;
    GuardedBuffers maxima(kMostChannels, size);
    GuardedBuffers minima(kMostChannels, size);
    const std::int32_t result = SendPeaks(plugin, {.prefs = prefs.Data()}, stretch, maxima, minima);
    const std::string what = fmt::format("{} with {}", Text(stretch), Text(settings));
    Require(result == kImportNoError, "{}: answered with {} instead of 0", what, result);
    prefs.RequireUnchanged("the settings of " + what);
    RequireHarmless(maxima, settings, ChannelsWritten(settings), what + ", maxima");
    // The minima are made from the maxima, for the channels that the clip says it has.
    RequireNoLouder(minima, ClipChannels(settings), LevelOf(settings), what + ", minima");
    minima.RequireUntouchedFrom(ClipChannels(settings), what + ", minima");
}

}  // namespace

void CheckHostileAudio(Examination& examination) {
    HostileNumbers numbers(examination);
    for (const std::int64_t position : HostilePositions()) {
        BarsAndToneInfo settings = numbers.Settings();
        settings.sampleRate = 48000.0F;
        RequireHarmlessAudio(examination.Plugin(), settings, {.position = position, .count = 200});
    }
    for (int i = 0; i < kRequests; ++i) {
        const BarsAndToneInfo settings = numbers.Settings();
        const Stretch stretch{.position = numbers.Position(),
                              .count = static_cast<std::uint32_t>(DrawCount(examination))};
        RequireHarmlessAudio(examination.Plugin(), settings, stretch);
    }
}

void CheckHostilePeaks(Examination& examination) {
    HostileNumbers numbers(examination);
    for (const std::int32_t count : {0, -1, -1000, std::numeric_limits<std::int32_t>::min()}) {
        RequireHarmlessPeaks(examination.Plugin(), BarsAndToneInfo{},
                             {.position = 0, .rateHz = 100.0F, .count = count});
    }
    for (int i = 0; i < kRequests; ++i) {
        const BarsAndToneInfo settings = numbers.Settings();
        const PeakStretch stretch{
            .position = numbers.Position(), .rateHz = numbers.Float(), .count = DrawCount(examination)};
        RequireHarmlessPeaks(examination.Plugin(), settings, stretch);
    }
}

}  // namespace lineup::validation
