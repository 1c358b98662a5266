#pragma once

#include "Host/Interface/Media/TickTime.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The identification sequences as line-up engineers know them, written down apart from the plug-in: what sounds when.
/// The validator and all tests of sequences go by this table.
namespace lineup::validation {

inline constexpr std::int64_t kTicksPerMs = zelmediatypes::kTicksPerSecond / 1000;

/// The channels of a six-channel clip, in the plug-in's order.
enum Channel : std::size_t { kL, kR, kLs, kRs, kC, kLfe };

/// A channel sounds from beginMs up to but not including endMs of every cycle.
struct Note {
    Channel channel = kL;
    std::int64_t beginMs = 0;
    std::int64_t endMs = 0;
    double frequencyHz = 0.0;
    double level = 0.125;         ///< -18.06 dBFS
    bool phaseOfRequest = false;  ///< begins with the phase of the request's start, wherever in the request it begins
};

struct Ident {
    const char* name;  ///< a word
    IdentifierFormat format;
    std::size_t channels;
    std::int64_t cycleMs;
    std::int64_t pieceMs;  ///< what sounds for less than the cycle is computed anew each pieceMs of a cycle
    std::span<const Note> notes;

    [[nodiscard]] constexpr std::int64_t CycleTicks() const { return cycleMs * kTicksPerMs; }

    /// What `channel` plays at clip time `time`; null where it is silent.
    [[nodiscard]] constexpr const Note* NoteAt(std::size_t channel, std::int64_t time) const {
        const std::int64_t inCycle = (time % CycleTicks() + CycleTicks()) % CycleTicks();
        for (const Note& note : notes) {
            if (note.channel == channel && inCycle >= note.beginMs * kTicksPerMs &&
                inCycle < note.endMs * kTicksPerMs) {
                return &note;
            }
        }
        return nullptr;
    }
    [[nodiscard]] constexpr float LevelAt(std::size_t channel, std::int64_t time) const {
        const Note* const note = NoteAt(channel, time);
        return note != nullptr ? static_cast<float>(note->level) : 0.0F;
    }

    /// Whether a note fills the cycle; then it is computed in one piece, however long the request.
    [[nodiscard]] constexpr bool NeverStops(const Note& note) const {
        return note.beginMs == 0 && note.endMs == cycleMs;
    }

    /// A clip that plays it.
    [[nodiscard]] BarsAndToneInfo Settings(float rateHz = 48000.0F) const {
        const auto count = static_cast<std::uint32_t>(channels);
        return {.sampleRate = rateHz,
                .channelType = ChannelTypeFor(count),
                .numChannels = count,
                .identifyChannels = 1,
                .identifierFormat = format};
    }
};

template <int kFrequencyHz>
inline constexpr std::array kStereoNotes = {Note{kL, 0, 2750, kFrequencyHz}, Note{kR, 0, 3000, kFrequencyHz}};

inline constexpr std::array kMultichannelNotes = {
    Note{kL, 0, 3000, 1000},
    Note{kR, 0, 3000, 1000},
    Note{kLs, 0, 3000, 1000},
    Note{kRs, 0, 3000, 1000},
    Note{kC, 0, 3000, 1000},
    Note{kL, 3500, 4000, 1000, 0.125, true},
    Note{kC, 4500, 5000, 1000, 0.125, true},
    Note{kR, 5500, 6000, 1000, 0.125, true},
    Note{kRs, 6500, 7000, 1000, 0.125, true},
    Note{kLs, 7500, 8000, 1000, 0.125, true},
    Note{kL, 9000, 12000, 1000},
    Note{kR, 9000, 12000, 1000},
    Note{kLs, 9000, 12000, 1000},
    Note{kRs, 9000, 12000, 1000},
    Note{kC, 9000, 12000, 1000},
    Note{kLfe, 0, 12000, 80},
};

inline constexpr std::array kBlitsNotes = {
    Note{kL, 0, 600, 880},
    Note{kR, 800, 1400, 880},
    Note{kC, 1600, 2200, 1320},
    Note{kLfe, 2400, 3000, 88.5},
    Note{kLs, 3200, 3800, 660},
    Note{kRs, 4000, 4600, 660},
    Note{kR, 4800, 9900, 1000},
    Note{kL, 4800, 5800, 1000},
    Note{kL, 6100, 6400, 1000},
    Note{kL, 6700, 7000, 1000},
    Note{kL, 7300, 7600, 1000},
    Note{kL, 7900, 9900, 1000},
    Note{kL, 10200, 13200, 2000, 0.0625},
    Note{kR, 10200, 13200, 2000, 0.0625},
    Note{kLs, 10200, 13200, 2000, 0.0625},
    Note{kRs, 10200, 13200, 2000, 0.0625},
    Note{kC, 10200, 13200, 2000, 0.0625},
    Note{kLfe, 10200, 13200, 2000, 0.0625},
};

inline constexpr Ident kStereo1000 = {"Stereo1000", EBUStereo1000, 2, 3000, 2750, kStereoNotes<1000>};
inline constexpr Ident kStereo400 = {"Stereo400", EBUStereo400, 2, 3000, 2750, kStereoNotes<400>};
inline constexpr Ident kMultichannel = {"Multichannel", EBUMultichannel, 6, 12000, 500, kMultichannelNotes};
inline constexpr Ident kBlits = {"Blits", BLITS5_1, 6, 13400, 100, kBlitsNotes};

inline constexpr std::array kIdents = {kStereo1000, kStereo400, kMultichannel, kBlits};

/// The sequence that a clip plays; null for a steady tone, and for a sequence that does not exist.
inline const Ident* IdentOf(const BarsAndToneInfo& settings) {
    return settings.identifyChannels == 1 && settings.identifierFormat < kIdents.size()
               ? &kIdents[settings.identifierFormat]
               : nullptr;
}

}  // namespace lineup::validation
