#pragma once

#include "Src/ToneGenerator/ToneGenerator.h"

#include <array>
#include <cstdint>

/// What the three identification sequences share: channels, level, and where in a cycle a time lies.
namespace ident {

using ChannelIndex = std::int64_t;

/// The channels of a six-channel clip, as the buffers are indexed.
inline constexpr ChannelIndex kLeftChannelIndex = 0;
inline constexpr ChannelIndex kRightChannelIndex = 1;
inline constexpr ChannelIndex kLeftSurroundChannelIndex = 2;
inline constexpr ChannelIndex kRightSurroundChannelIndex = 3;
inline constexpr ChannelIndex kCentreChannelIndex = 4;
inline constexpr ChannelIndex kLowFrequencyChannelIndex = 5;

/// The level of every ident tone but the last one of BLITS: -18.06 dBFS.
inline constexpr double kLevel = 0.125;
inline constexpr float kLevelFloat = 0.125F;

/// Where a time lies in a sequence that repeats from clip time 0.
struct CyclePosition {
    zelmediatypes::TickTime cycleStart;
    std::int64_t step = 0;  ///< 0 for the step that begins with the cycle
};

/// The position of `time` in cycles of `cycleLength` made of steps of `stepLength`. A time on a step's
/// boundary belongs to the step that begins there; negative times continue the cycles backwards.
constexpr CyclePosition Locate(const zelmediatypes::TickTime& time, const zelmediatypes::FrameRate& cycleLength,
                               const zelmediatypes::FrameRate& stepLength) noexcept {
    const zelmediatypes::TickTime cycleStart = cycleLength * time.ToFrame64(cycleLength);
    return {cycleStart, (time - cycleStart).ToFrame64(stepLength)};
}

/// The end of the step that `position` names.
constexpr zelmediatypes::TickTime StepEnd(const CyclePosition& position,
                                          const zelmediatypes::FrameRate& stepLength) noexcept {
    return position.cycleStart + stepLength * position.step + stepLength * 1;
}

/// A set of channels, one bit each, bit c for channel c.
using ChannelSet = unsigned;

constexpr ChannelSet Only(ChannelIndex channel) noexcept {
    return 1U << static_cast<unsigned>(channel);
}

inline constexpr ChannelSet kNoChannels = 0;
inline constexpr ChannelSet kFrontPair = Only(kLeftChannelIndex) | Only(kRightChannelIndex);
inline constexpr ChannelSet kFullRangeChannels =
    kFrontPair | Only(kLeftSurroundChannelIndex) | Only(kRightSurroundChannelIndex) | Only(kCentreChannelIndex);
inline constexpr ChannelSet kAllChannels = kFullRangeChannels | Only(kLowFrequencyChannelIndex);

/// The channels of `set` in ascending order, as the generator's operations take them.
ToneGenerator::ChannelList ToChannelList(ChannelSet set);

}  // namespace ident
