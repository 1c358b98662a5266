#include "Host/Lineup/Validation/Sounds.h"

#include "Host/Interface/Media/TickTime.h"
#include "Host/Lineup/Validation/Probes/HostileNumbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace lineup::validation {

namespace {

constexpr std::int64_t kTicksPerMs = zelmediatypes::kTicksPerSecond / 1000;
constexpr std::size_t kL = 0;
constexpr std::size_t kR = 1;
constexpr std::size_t kLs = 2;
constexpr std::size_t kRs = 3;
constexpr std::size_t kC = 4;
constexpr std::size_t kLfe = 5;

constexpr double kIdentLevel = 0.125;     // -18.06 dBFS
constexpr double kClosingLevel = 0.0625;  // -24.08 dBFS

constexpr std::array kEbuStereo1000 = {Note{kL, 0, 2750, 1000, kIdentLevel}, Note{kR, 0, 3000, 1000, kIdentLevel}};
constexpr std::array kEbuStereo400 = {Note{kL, 0, 2750, 400, kIdentLevel}, Note{kR, 0, 3000, 400, kIdentLevel}};

constexpr std::array kEbuMultichannel = {
    Note{kL, 0, 3000, 1000, kIdentLevel},           Note{kR, 0, 3000, 1000, kIdentLevel},
    Note{kLs, 0, 3000, 1000, kIdentLevel},          Note{kRs, 0, 3000, 1000, kIdentLevel},
    Note{kC, 0, 3000, 1000, kIdentLevel},           Note{kL, 3500, 4000, 1000, kIdentLevel, true},
    Note{kC, 4500, 5000, 1000, kIdentLevel, true},  Note{kR, 5500, 6000, 1000, kIdentLevel, true},
    Note{kRs, 6500, 7000, 1000, kIdentLevel, true}, Note{kLs, 7500, 8000, 1000, kIdentLevel, true},
    Note{kL, 9000, 12000, 1000, kIdentLevel},       Note{kR, 9000, 12000, 1000, kIdentLevel},
    Note{kLs, 9000, 12000, 1000, kIdentLevel},      Note{kRs, 9000, 12000, 1000, kIdentLevel},
    Note{kC, 9000, 12000, 1000, kIdentLevel},       Note{kLfe, 0, 12000, 80, kIdentLevel},
};

constexpr std::array kBlits = {
    Note{kL, 0, 600, 880, kIdentLevel},           Note{kR, 800, 1400, 880, kIdentLevel},
    Note{kC, 1600, 2200, 1320, kIdentLevel},      Note{kLfe, 2400, 3000, 88.5, kIdentLevel},
    Note{kLs, 3200, 3800, 660, kIdentLevel},      Note{kRs, 4000, 4600, 660, kIdentLevel},
    Note{kR, 4800, 9900, 1000, kIdentLevel},      Note{kL, 4800, 5800, 1000, kIdentLevel},
    Note{kL, 6100, 6400, 1000, kIdentLevel},      Note{kL, 6700, 7000, 1000, kIdentLevel},
    Note{kL, 7300, 7600, 1000, kIdentLevel},      Note{kL, 7900, 9900, 1000, kIdentLevel},
    Note{kL, 10200, 13200, 2000, kClosingLevel},  Note{kR, 10200, 13200, 2000, kClosingLevel},
    Note{kLs, 10200, 13200, 2000, kClosingLevel}, Note{kRs, 10200, 13200, 2000, kClosingLevel},
    Note{kC, 10200, 13200, 2000, kClosingLevel},  Note{kLfe, 10200, 13200, 2000, kClosingLevel},
};

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
            .notes = {}};
}

Sound Ident(std::string_view name, float rateHz, IdentifierFormat format, std::int64_t cycleMs,
            std::span<const Note> notes) {
    const std::size_t channels = std::ranges::max(notes, {}, &Note::channel).channel + 1;
    Sound sound = SteadyTone(name, rateHz, static_cast<std::uint32_t>(channels));
    sound.settings.identifyChannels = 1;
    sound.settings.identifierFormat = format;
    sound.highestFrequencyHz = std::ranges::max(notes, {}, &Note::frequencyHz).frequencyHz;
    sound.level = kIdentLevel;
    sound.cycleTicks = cycleMs * kTicksPerMs;
    sound.notes = notes;
    return sound;
}

}  // namespace

const Note* Sound::NoteAt(std::size_t channel, std::int64_t index) const {
    const std::int64_t ticks = (zelmediatypes::FrameRateFromHz(settings.sampleRate) * index).Ticks();
    const std::int64_t inCycle = (ticks % cycleTicks + cycleTicks) % cycleTicks;
    const auto note = std::ranges::find_if(notes, [&](const Note& each) {
        return each.channel == channel && inCycle >= each.beginMs * kTicksPerMs && inCycle < each.endMs * kTicksPerMs;
    });
    return note == notes.end() ? nullptr : &*note;
}

std::int64_t Sound::CycleSamples() const {
    return cycleTicks / zelmediatypes::FrameRateFromHz(settings.sampleRate).Ticks();
}

std::vector<Sound> Sounds(float rateHz) {
    return {
        SteadyTone("a steady tone in mono", rateHz, 1),
        SteadyTone("a steady tone in stereo", rateHz, 2),
        SteadyTone("a steady tone in 5.1", rateHz, 6),
        Ident("the EBU stereo ident at 1000 Hz", rateHz, EBUStereo1000, 3000, kEbuStereo1000),
        Ident("the EBU stereo ident at 400 Hz", rateHz, EBUStereo400, 3000, kEbuStereo400),
        Ident("the EBU 5.1 ident", rateHz, EBUMultichannel, 12000, kEbuMultichannel),
        Ident("the BLITS ident", rateHz, BLITS5_1, 13400, kBlits),
    };
}

std::size_t ClipChannels(const BarsAndToneInfo& settings) {
    return settings.numChannels <= kHostileChannels ? settings.numChannels : 0;
}

std::size_t ChannelsWritten(const BarsAndToneInfo& settings) {
    if (settings.identifyChannels != 1) {
        return ClipChannels(settings);
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
