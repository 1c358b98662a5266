#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

namespace lineup::validation {

namespace {

constexpr int kRequests = 4000;
constexpr double kHostileIdentLevel = 0.125;

double LevelOf(const BarsAndToneInfo& settings) {
    if (settings.identifyChannels == 1) {
        return kHostileIdentLevel;
    }
    const double level = std::abs(static_cast<double>(settings.amplitude));
    return std::isnan(level) ? std::numeric_limits<double>::infinity() : level;
}

// Numbers that mean nothing may make samples that are NaN, but none that are too loud. A steady tone is written whole
// whatever its numbers; of a sequence whose times wrap, not even that is promised.
void RequireHarmless(const GuardedBuffers& buffers, const BarsAndToneInfo& settings, std::size_t channels,
                     const std::string& what) {
    if (settings.identifyChannels != 1) {
        RequireIntact(what, buffers.LeftUnwritten(channels));
    }
    RequireIntact(what, buffers.LouderThan(LevelOf(settings), channels));
    RequireIntact(what, buffers.WrittenFrom(channels));
}

void RequireHarmlessAudio(const RawImporter& plugin, const BarsAndToneInfo& settings, const Stretch& stretch) {
    GuardedRecord<BarsAndToneInfo> prefs(settings, kPlacements.back());
    GuardedBuffers buffers(kHostileChannels, stretch.count);
    const std::int32_t result = SendAudio(plugin, {.prefs = prefs.Data()}, stretch, buffers);
    const std::string what = fmt::format("{} with {}", Text(stretch), Text(settings));
    Require(result == kImportNoError, "{} is answered with {} instead of 0", what, result);
    RequireIntact("the settings of " + what, prefs.ChangedOutside());
    RequireHarmless(buffers, settings, ChannelsWritten(settings), what);
}

void RequireHarmlessPeaks(const RawImporter& plugin, const BarsAndToneInfo& settings, const PeakStretch& stretch) {
    GuardedRecord<BarsAndToneInfo> prefs(settings, kPlacements.back());
    const std::size_t size = stretch.count > 0 ? static_cast<std::size_t>(stretch.count) : 0;
    GuardedBuffers maxima(kHostileChannels, size);
    GuardedBuffers minima(kHostileChannels, size);
    const std::int32_t result = SendPeaks(plugin, {.prefs = prefs.Data()}, stretch, maxima, minima);
    const std::string what = fmt::format("{} with {}", Text(stretch), Text(settings));
    Require(result == kImportNoError, "{}: answered with {} instead of 0", what, result);
    RequireIntact("the settings of " + what, prefs.ChangedOutside());
    RequireHarmless(maxima, settings, ChannelsWritten(settings), what + ", maxima");
    // The minima are made from the maxima, for the channels that the clip says it has.
    RequireIntact(what + ", minima", minima.LouderThan(LevelOf(settings), ClipChannels(settings)));
    RequireIntact(what + ", minima", minima.WrittenFrom(ClipChannels(settings)));
}

void CheckHostileTones(Examination& examination) {
    HostileNumbers numbers(examination.Numbers());
    const RawImporter& plugin = examination.Plugin();
    for (const std::int64_t position : kHostilePositions) {
        BarsAndToneInfo settings = numbers.Settings();
        settings.sampleRate = 48000.0F;
        RequireHarmlessAudio(plugin, settings, {.position = position, .count = 200});
    }
    for (int i = 0; i < kRequests; ++i) {
        const BarsAndToneInfo settings = numbers.Settings();
        const Stretch stretch{.position = numbers.Position(), .count = static_cast<std::uint32_t>(numbers.Count())};
        RequireHarmlessAudio(plugin, settings, stretch);
        RequireHarmlessPeaks(plugin, numbers.Settings(),
                             {.position = numbers.Position(), .rateHz = numbers.Float(), .count = numbers.Count()});
    }
}

}  // namespace

std::span<const Promise> ClipHostilePromises() {
    static constexpr std::array kRows = {
        Promise{"clip-odd-numbers", "Whatever its numbers, a tone fills its channels, no other, and is no louder.",
                CheckHostileTones},
    };
    return kRows;
}

}  // namespace lineup::validation
