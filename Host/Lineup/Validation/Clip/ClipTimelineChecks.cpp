#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Joins.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace lineup::validation {

namespace {

constexpr std::int64_t kGridAt48kHz = 48;  // a millisecond, which hosts cut at
constexpr std::int64_t kTenth = 4800;      // of a second

double RateHz(const Sound& sound) {
    return zelmediatypes::RateHz(zelmediatypes::FrameRateFromHz(sound.settings.sampleRate));
}

double TopCycles(const Sound& sound, std::int64_t samples) {
    return sound.highestFrequencyHz * static_cast<double>(samples) / RateHz(sound);
}

// Whether a sample's phase depends on its request's start: the lone bursts of the 5.1 ident are the one
// sound that may differ from cut to cut.
bool MayDiffer(const Sound& sound, std::size_t channel, std::int64_t index) {
    const Note* const note = sound.IsIdent() ? sound.NoteAt(channel, index) : nullptr;
    return note != nullptr && note->phaseOfRequest;
}

// Requires that `stretch` read in pieces is the same as read at once.
void RequireJoins(const RawImporter& plugin, const Sound& sound, const Stretch& stretch,
                  const std::vector<std::uint32_t>& cuts, bool burstsToo) {
    const Samples whole = ReadAudio(plugin, AsTestClip(sound), stretch);
    std::uint32_t first = 0;
    for (const std::uint32_t cut : cuts) {
        const Stretch piece{.position = stretch.position + first, .count = cut - first};
        const Samples part = ReadAudio(plugin, AsTestClip(sound), piece);
        for (std::size_t c = 0; c < sound.channels; ++c) {
            for (std::uint32_t i = 0; i < piece.count; ++i) {
                const std::int64_t at = std::int64_t{first} + i;
                const float inWhole = whole[c][static_cast<std::size_t>(at)];
                const double bound = JoinBound(TopCycles(sound, at), sound.level);
                if (!IsNear(part[c][i], inWhole, bound) && (burstsToo || !MayDiffer(sound, c, stretch.position + at))) {
                    Fail("{} at {} Hz: {} does not join {}: channel {}, sample {} is {} instead of {}, +-{:.3g}",
                         sound.name, sound.settings.sampleRate, Text(piece), Text(stretch), c, stretch.position + at,
                         part[c][i], inWhole, bound);
                }
            }
        }
        first = cut;
    }
}

// A stretch somewhere in the sound's cycle, that many whole cycles from clip time 0, sounds as it does in
// the cycle from 0 on.
void RequireSameCycle(Examination& examination, const Sound& sound, std::int64_t cycles) {
    constexpr std::uint32_t kCount = 20000;
    const auto inCycle = static_cast<std::int64_t>(examination.Below(static_cast<std::uint64_t>(sound.CycleSamples())));
    const Stretch near{.position = inCycle, .count = kCount};
    const Stretch far{.position = cycles * sound.CycleSamples() + inCycle, .count = kCount};
    const RawImporter& plugin = examination.Plugin();
    const Samples expected = ReadAudio(plugin, AsTestClip(sound), near);
    const Samples samples = ReadAudio(plugin, AsTestClip(sound), far);
    for (std::size_t c = 0; c < sound.channels; ++c) {
        for (std::uint32_t i = 0; i < kCount; ++i) {
            const double bound = FarBound(TopCycles(sound, i) + 1, TopCycles(sound, far.position), sound.level);
            if (!IsNear(samples[c][i], expected[c][i], bound)) {
                Fail("{}: {} is not what it is {} cycles away: channel {}, sample {} is {} instead of {}, +-{:.3g}",
                     sound.name, Text(far), cycles, c, far.position + i, samples[c][i], expected[c][i], bound);
            }
        }
    }
}

// Cycles that last about `seconds`: a multiple of ten, after which every tone of every sequence has done
// whole cycles. One cycle of BLITS is 1185.9 of its 88.5 Hz.
std::int64_t CyclesIn(const Sound& sound, std::int64_t seconds) {
    constexpr std::int64_t kWhole = 10;
    return (seconds * zelmediatypes::kTicksPerSecond / sound.cycleTicks / kWhole + 1) * kWhole;
}

constexpr std::int64_t kHour = 3600;
constexpr std::int64_t kYear = kHour * 24 * 365;  // ticks wrap after 420 days

void CheckAudioJoins(Examination& examination) {
    constexpr int kPieces = 40;
    const RawImporter& plugin = examination.Plugin();
    for (const Sound& sound : Sounds()) {
        const auto count = static_cast<std::uint32_t>(std::max(sound.CycleSamples(), std::int64_t{240000}));
        const auto start = static_cast<std::int64_t>(examination.Below(count)) / kGridAt48kHz * kGridAt48kHz;
        const Stretch stretch{.position = start, .count = count};
        RequireJoins(plugin, sound, stretch, DrawCuts(examination.Numbers(), count, 1, kPieces), false);
        RequireJoins(plugin, sound, stretch, DrawCuts(examination.Numbers(), count, kGridAt48kHz, kPieces), true);
    }
}

void CheckAudioFar(Examination& examination) {
    for (const Sound& sound : Sounds()) {
        for (const std::int64_t seconds : {60L, kHour, 100 * kHour, kYear}) {
            RequireSameCycle(examination, sound, CyclesIn(sound, seconds));
        }
    }
}

void CheckAudioNegative(Examination& examination) {
    for (const Sound& sound : Sounds()) {
        for (const std::int64_t seconds : {60L, kHour, 100 * kHour, kYear}) {
            RequireSameCycle(examination, sound, -CyclesIn(sound, seconds));
        }
        // Across clip time 0, cut at it.
        RequireJoins(examination.Plugin(), sound, {.position = -kTenth, .count = 2 * kTenth}, {kTenth, 2 * kTenth},
                     true);
    }
}

void CheckOddRates(Examination& examination) {
    constexpr std::uint32_t kCount = 8000;
    constexpr std::array kRatesHz = {8000.0F,  11025.0F, 22050.0F, 32000.0F,  44056.0F,  44099.75F, 44100.25F, 47952.0F,
                                     48048.0F, 88200.0F, 96000.1F, 176400.0F, 192000.0F, 384000.0F, 997.0F};
    const RawImporter& plugin = examination.Plugin();
    for (const float rateHz : kRatesHz) {
        for (const Sound& sound : Sounds(rateHz)) {
            const auto start = static_cast<std::int64_t>(examination.Below(1000000));
            RequireJoins(plugin, sound, {.position = start, .count = kCount},
                         DrawCuts(examination.Numbers(), kCount, 1, 8), false);
        }
        // A whole second later, a steady tone sounds the same only when its rate is heeded: a quarter of
        // a cycle from clip time 0 lies its crest.
        Sound tone = Sounds(rateHz).front();
        tone.settings.frequency = rateHz / 16;
        const Samples samples = ReadAudio(plugin, AsTestClip(tone), {.position = 0, .count = 9});
        const bool crest = samples[0][4] > 0.999 * tone.level && std::abs(samples[0][0]) < 1e-6 &&
                           std::abs(samples[0][8]) < 1e-3 * tone.level;
        Require(
            crest,
            "at {} Hz a tone of a sixteenth of that is not a cycle of 16 samples: samples 0, 4 and 8 are {}, {} and {}",
            rateHz, samples[0][0], samples[0][4], samples[0][8]);
    }
}

}  // namespace

std::span<const Promise> ClipTimelinePromises() {
    static constexpr std::array kRows = {
        Promise{"audio-joins",
                "Pieces of a tone or a sequence join to the rounding of their phase, wherever it is cut.",
                CheckAudioJoins},
        Promise{"audio-far", "Far from its beginning a clip sounds as it does near it.", CheckAudioFar},
        Promise{"audio-negative", "Before its beginning a clip sounds as it does after it.", CheckAudioNegative},
        Promise{"odd-rates", "At odd sample rates, too, audio is whole, in tune and joins.", CheckOddRates},
    };
    return kRows;
}

}  // namespace lineup::validation
