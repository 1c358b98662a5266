#pragma once

#include "Src/ToneGenerator/ToneGenerator.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

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
    zelmediatypes::TickTime stepStart;
    std::int64_t step = 0;  ///< 0 for the step that begins with the cycle
};

/// The position of `time` in cycles of `cycleLength` made of steps of `stepLength`. A time on a step's
/// boundary belongs to the step that begins there; negative times continue the cycles backwards. The
/// step lies inside the cycle for every time there is: where cycleStart wraps, the difference wraps back.
constexpr CyclePosition Locate(const zelmediatypes::TickTime& time, const zelmediatypes::FrameRate& cycleLength,
                               const zelmediatypes::FrameRate& stepLength) noexcept {
    const zelmediatypes::TickTime cycleStart = cycleLength * time.ToFrame64(cycleLength);
    const std::int64_t step = (time - cycleStart).ToFrame64(stepLength);
    return {cycleStart, cycleStart + stepLength * step, step};
}

/// The row of a cycle's table that `step` belongs to. A row has a member lastStep and runs up to that
/// step from the one after the row above. Null for a step outside the cycle; Locate gives none.
template <class Row, std::size_t kRowCount>
constexpr const Row* FindRow(const std::array<Row, kRowCount>& rows, std::int64_t step) noexcept {
    if (step < 0 || step > rows.back().lastStep) {
        return nullptr;
    }
    return &*std::ranges::lower_bound(rows, step, {}, &Row::lastStep);
}

/// Whether the rows follow one another and end with the cycle.
template <class Row, std::size_t kRowCount>
consteval bool MakeOneCycle(const std::array<Row, kRowCount>& rows, const zelmediatypes::FrameRate& cycleLength,
                            const zelmediatypes::FrameRate& stepLength) {
    const bool ascending = std::ranges::adjacent_find(rows, std::ranges::greater_equal(), &Row::lastStep) == rows.end();
    return ascending && stepLength.Ticks() * (rows.back().lastStep + 1) == cycleLength.Ticks();
}

/// A set of channels, one bit each, bit c for channel c.
using ChannelSet = unsigned;

constexpr ChannelSet Only(ChannelIndex channel) noexcept {
    return 1U << static_cast<unsigned>(channel);
}

inline constexpr ChannelSet kNoChannels = 0;
inline constexpr ChannelSet kLeft = Only(kLeftChannelIndex);
inline constexpr ChannelSet kRight = Only(kRightChannelIndex);
inline constexpr ChannelSet kLeftSurround = Only(kLeftSurroundChannelIndex);
inline constexpr ChannelSet kRightSurround = Only(kRightSurroundChannelIndex);
inline constexpr ChannelSet kCentre = Only(kCentreChannelIndex);
inline constexpr ChannelSet kLowFrequency = Only(kLowFrequencyChannelIndex);
inline constexpr ChannelSet kFrontPair = kLeft | kRight;
inline constexpr ChannelSet kFullRangeChannels = kFrontPair | kLeftSurround | kRightSurround | kCentre;
inline constexpr ChannelSet kAllChannels = kFullRangeChannels | kLowFrequency;

/// The channels of `set` in ascending order, as the generator's operations take them.
ToneGenerator::ChannelList ToChannelList(ChannelSet set);

}  // namespace ident
