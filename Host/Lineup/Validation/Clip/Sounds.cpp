#include "Host/Lineup/Validation/Clip/Sounds.h"

#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numbers>
#include <utility>

namespace lineup::validation {

namespace {

Sound SteadyTone(std::string_view name, float rateHz, std::uint32_t channels) {
    BarsAndToneInfo settings;
    settings.sampleRate = rateHz;
    settings.numChannels = channels;
    settings.channelType = ChannelTypeFor(channels);
    return {.name = name,
            .settings = settings,
            .channels = channels,
            .highestFrequencyHz = static_cast<double>(settings.frequency),
            .level = static_cast<double>(settings.amplitude),
            .cycleTicks = zelmediatypes::kTicksPerSecond,  // whole cycles of the default frequency
            .ident = nullptr};
}

Sound Sequence(std::string_view name, float rateHz, const Ident& ident) {
    Sound sound = SteadyTone(name, rateHz, static_cast<std::uint32_t>(ident.channels));
    sound.settings = ident.Settings(rateHz);
    sound.highestFrequencyHz = std::ranges::max(ident.notes, {}, &Note::frequencyHz).frequencyHz;
    sound.level = std::ranges::max(ident.notes, {}, &Note::level).level;
    sound.cycleTicks = ident.CycleTicks();
    sound.ident = &ident;
    return sound;
}

}  // namespace

const Note* Sound::NoteAt(std::size_t channel, std::int64_t index) const {
    return ident->NoteAt(channel, (zelmediatypes::FrameRateFromHz(settings.sampleRate) * index).Ticks());
}

std::int64_t Sound::CycleSamples() const {
    return cycleTicks / zelmediatypes::FrameRateFromHz(settings.sampleRate).Ticks();
}

std::vector<Sound> Sounds(float rateHz) {
    return {
        SteadyTone("a steady tone in mono", rateHz, 1),
        SteadyTone("a steady tone in stereo", rateHz, 2),
        SteadyTone("a steady tone in 5.1", rateHz, 6),
        Sequence("the EBU stereo ident at 1000 Hz", rateHz, kStereo1000),
        Sequence("the EBU stereo ident at 400 Hz", rateHz, kStereo400),
        Sequence("the EBU 5.1 ident", rateHz, kMultichannel),
        Sequence("the BLITS ident", rateHz, kBlits),
    };
}

TestClip AsTestClip(std::string name, const BarsAndToneInfo& settings) {
    const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof settings>>(settings);
    return {.name = std::move(name),
            .settings = SettingsBytes(bytes.begin(), bytes.end()),
            .channels = settings.numChannels,
            .rateHz = settings.sampleRate,
            .durationSamples = 5 * static_cast<std::int64_t>(settings.sampleRate),
            .hasVideo = true,
            .hasAudio = true};
}

TestClip AsTestClip(const Sound& sound) {
    return AsTestClip(fmt::format("{} at {} Hz", sound.name, sound.settings.sampleRate), sound.settings);
}

std::vector<KnownSettings> KnownClips() {
    std::vector<KnownSettings> known;
    for (const Sound& sound : Sounds()) {
        TestClip clip = AsTestClip(sound);
        known.push_back({.name = std::move(clip.name), .bytes = std::move(clip.settings)});
    }
    return known;
}

std::size_t ClipChannels(const BarsAndToneInfo& settings) {
    return settings.numChannels <= kHostileChannels ? settings.numChannels : 0;
}

std::size_t ChannelsWritten(const BarsAndToneInfo& settings) {
    if (settings.identifyChannels != 1) {
        return ClipChannels(settings);
    }
    const Ident* const ident = IdentOf(settings);
    return ident != nullptr ? ident->channels : 0;
}

std::string Text(const BarsAndToneInfo& settings) {
    return fmt::format("settings of {} channels at {} Hz, ident {}/{}, {} Hz at {}", settings.numChannels,
                       settings.sampleRate, settings.identifyChannels,
                       static_cast<std::uint32_t>(settings.identifierFormat), settings.frequency, settings.amplitude);
}

bool IsNear(double a, double b, double bound) {
    return std::abs(a - b) <= bound;
}

double JoinBound(double cycles, double level) {
    constexpr double kPhaseErrorACycle = 1.75e-7;  // rad
    constexpr double kRounding = 0x1p-22;          // of two samples, each rounded to single precision
    return level * (kPhaseErrorACycle * std::abs(cycles) + kRounding);
}

double FarBound(double cycles, double cyclesFromZero, double level) {
    constexpr double kRounding = 0x1p-51;  // of the cycles a sample and of their product with its index
    return JoinBound(cycles, level) + level * 2 * std::numbers::pi * std::abs(cyclesFromZero) * kRounding;
}

}  // namespace lineup::validation
