#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace lineup::validation {

namespace {

// All that the sound writes, and nothing in a channel that it does not have.
void RequireOwnChannels(const RawImporter& plugin, const Sound& sound, const Stretch& stretch) {
    HostSettings settings(plugin, AsTestClip(sound));
    GuardedBuffers buffers(kHostileChannels, stretch.count);
    const std::int32_t result = SendAudio(plugin, settings.Pointers(), stretch, buffers);
    const std::string what = fmt::format("{} of {}", Text(stretch), sound.name);
    Require(result == kImportNoError, "{} is answered with {} instead of 0", what, result);
    RequireIntact(what, buffers.LeftUnwritten(sound.channels));
    RequireIntact(what, buffers.LouderThan(sound.level, sound.channels));
    RequireIntact(what, buffers.WrittenFrom(sound.channels));
}

// The phase of a steady tone: that of the first sample's index, counted with 2 pi in single precision.
class SteadyPhase {
public:
    SteadyPhase(const BarsAndToneInfo& settings, std::int64_t position) {
        const auto sampleLength = zelmediatypes::FrameRateFromHz(settings.sampleRate);
        const double cyclesASample = static_cast<double>(settings.frequency) / zelmediatypes::RateHz(sampleLength);
        const double cycles = static_cast<double>(position) * cyclesASample;
        mPhase = (cycles - std::trunc(cycles)) * kTwoPi;
        mStep = kTwoPi * cyclesASample;
    }
    double Next() {
        const double sine = std::sin(mPhase);
        mPhase += mStep;
        return sine;
    }

private:
    static constexpr double kTwoPi = static_cast<double>(2 * std::numbers::pi_v<float>);
    double mPhase;
    double mStep;
};

void RequireSteadyTone(const RawImporter& plugin, const BarsAndToneInfo& settings, const Stretch& stretch) {
    const Samples samples = ReadAudio(plugin, AsTestClip("a steady tone", settings), stretch);
    const auto level = static_cast<double>(settings.amplitude);
    for (std::size_t c = 0; c < samples.size(); ++c) {
        SteadyPhase phase(settings, stretch.position);
        for (std::size_t i = 0; i < samples[c].size(); ++i) {
            const double expected = phase.Next() * level;
            if (!IsNear(samples[c][i], expected, JoinBound(0, level))) {
                Fail("{} at {} Hz, {} Hz at {}: channel {}, sample {} is {} instead of {}", Text(stretch),
                     settings.sampleRate, settings.frequency, settings.amplitude, c, i, samples[c][i], expected);
            }
        }
    }
}

// One cycle from clip time 0 and a little more; there, a burst that starts with its request's phase has
// the phase of clip time too.
void RequireSchedule(const RawImporter& plugin, const Sound& sound) {
    const auto sampleLength = zelmediatypes::FrameRateFromHz(sound.settings.sampleRate);
    const double rateHz = zelmediatypes::RateHz(sampleLength);
    const auto count = static_cast<std::uint32_t>(sound.CycleSamples() + 10000);
    const Samples samples = ReadAudio(plugin, AsTestClip(sound), {.position = 0, .count = count});
    for (std::size_t c = 0; c < sound.channels; ++c) {
        for (std::uint32_t i = 0; i < count; ++i) {
            const Note* const note = sound.NoteAt(c, i);
            double expected = 0;
            double bound = 0;
            if (note != nullptr) {
                const double cycles = note->frequencyHz * i / rateHz;
                expected = note->level * std::sin(2 * std::numbers::pi * (cycles - std::floor(cycles)));
                bound = JoinBound(cycles, note->level);
            }
            if (!IsNear(samples[c][i], expected, bound)) {
                Fail("{} at {} Hz: channel {}, {:.4f} s into the clip is {} instead of {}", sound.name,
                     sound.settings.sampleRate, c, i / rateHz, samples[c][i], expected);
            }
        }
    }
}

void CheckOwnChannels(Examination& examination) {
    for (const Sound& sound : Sounds()) {
        for (const std::uint32_t count : {0U, 1U, 3U, 17U, 480U, 20001U}) {
            const auto position = static_cast<std::int64_t>(examination.Below(2000000));
            RequireOwnChannels(examination.Plugin(), sound, {.position = position, .count = count});
        }
    }
}

void CheckSteadyTone(Examination& examination) {
    const RawImporter& plugin = examination.Plugin();
    RequireSteadyTone(plugin, BarsAndToneInfo{}, {.position = 0, .count = 240000});
    for (const float rateHz : {44100.0F, 48000.0F, 96000.0F}) {
        for (const float frequencyHz : {20.0F, 440.0F, 1000.0F, 997.25F, 19999.5F}) {
            BarsAndToneInfo settings;
            settings.sampleRate = rateHz;
            settings.frequency = frequencyHz;
            settings.numChannels = frequencyHz < 500.0F ? 1 : 6;
            settings.amplitude = static_cast<float>(1 + examination.Below(1000)) / 1000.0F;
            const auto position = static_cast<std::int64_t>(examination.Below(1000000));
            RequireSteadyTone(plugin, settings, {.position = position, .count = 1000});
        }
    }
}

void CheckIdentSchedules(Examination& examination) {
    for (const float rateHz : {48000.0F, 44100.0F}) {
        for (const Sound& sound : Sounds(rateHz)) {
            if (sound.IsIdent()) {
                RequireSchedule(examination.Plugin(), sound);
            }
        }
    }
}

}  // namespace

std::span<const Promise> ClipSoundPromises() {
    static constexpr std::array kRows = {
        Promise{"clip-channels", "Audio fills the channels of the tone or the sequence, no other, and no louder.",
                CheckOwnChannels},
        Promise{"steady-tone", "A steady tone is the sine that its settings name, sample by sample.", CheckSteadyTone},
        Promise{"ident-schedules", "Each channel of an identification sequence sounds at its times, at its level.",
                CheckIdentSchedules},
    };
    return kRows;
}

}  // namespace lineup::validation
