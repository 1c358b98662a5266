#pragma once

#include "Host/Interface/Media/TickTime.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <array>
#include <cstdint>
#include <span>

/// When each channel of an identification sequence sounds, and how loud: the sequences as line-up
/// engineers know them, written down by themselves.
namespace test {

inline constexpr float kLineUpLevel = 0.125F;    // -18 dBFS
inline constexpr float kClosingLevel = 0.0625F;  // -24 dBFS

enum Channel : int { kL, kR, kLs, kRs, kC, kLfe };

/// A channel sounds from `beginMs` up to but not including `endMs` of every cycle.
struct Sound {
    Channel channel = kL;
    int beginMs = 0;
    int endMs = 0;
    float level = kLineUpLevel;
};

inline constexpr std::array kEbuStereoSounds = {Sound{kL, 0, 2750}, Sound{kR, 0, 3000}};

inline constexpr std::array kEbuMultichannelSounds = {
    Sound{kL, 0, 3000},      Sound{kR, 0, 3000},      Sound{kLs, 0, 3000},    Sound{kRs, 0, 3000},
    Sound{kC, 0, 3000},      Sound{kL, 3500, 4000},   Sound{kC, 4500, 5000},  Sound{kR, 5500, 6000},
    Sound{kRs, 6500, 7000},  Sound{kLs, 7500, 8000},  Sound{kL, 9000, 12000}, Sound{kR, 9000, 12000},
    Sound{kLs, 9000, 12000}, Sound{kRs, 9000, 12000}, Sound{kC, 9000, 12000}, Sound{kLfe, 0, 12000},
};

inline constexpr std::array kBlitsSounds = {
    Sound{kL, 0, 600},
    Sound{kR, 800, 1400},
    Sound{kC, 1600, 2200},
    Sound{kLfe, 2400, 3000},
    Sound{kLs, 3200, 3800},
    Sound{kRs, 4000, 4600},
    Sound{kR, 4800, 9900},
    Sound{kL, 4800, 5800},
    Sound{kL, 6100, 6400},
    Sound{kL, 6700, 7000},
    Sound{kL, 7300, 7600},
    Sound{kL, 7900, 9900},
    Sound{kL, 10200, 13200, kClosingLevel},
    Sound{kR, 10200, 13200, kClosingLevel},
    Sound{kLs, 10200, 13200, kClosingLevel},
    Sound{kRs, 10200, 13200, kClosingLevel},
    Sound{kC, 10200, 13200, kClosingLevel},
    Sound{kLfe, 10200, 13200, kClosingLevel},
};

/// A sequence: its settings and its schedule.
struct Schedule {
    IdentifierFormat format;
    std::uint32_t numChannels;
    int cycleMs;
    std::span<const Sound> sounds;

    [[nodiscard]] BarsAndToneInfo Settings(float rateHz = 48000.0F) const {
        BarsAndToneInfo settings;
        settings.sampleRate = rateHz;
        settings.numChannels = numChannels;
        settings.identifyChannels = 1;
        settings.identifierFormat = format;
        return settings;
    }

    /// The level of a channel at a clip time.
    [[nodiscard]] float Level(int channel, zelmediatypes::TickTime time) const {
        constexpr std::int64_t kTicksPerMs = zelmediatypes::kTicksPerSecond / 1000;
        const std::int64_t cycle = kTicksPerMs * cycleMs;
        const std::int64_t inCycle = (time.Ticks() % cycle + cycle) % cycle;
        for (const Sound& sound : sounds) {
            if (sound.channel == channel && inCycle >= sound.beginMs * kTicksPerMs &&
                inCycle < sound.endMs * kTicksPerMs) {
                return sound.level;
            }
        }
        return 0;
    }
};

inline constexpr Schedule kEbuStereo = {EBUStereo1000, 2, 3000, kEbuStereoSounds};
inline constexpr Schedule kEbuStereo400 = {EBUStereo400, 2, 3000, kEbuStereoSounds};
inline constexpr Schedule kEbuMultichannel = {EBUMultichannel, 6, 12000, kEbuMultichannelSounds};
inline constexpr Schedule kBlits = {BLITS5_1, 6, 13400, kBlitsSounds};

}  // namespace test
