#pragma once

#include "Host/Lineup/Validation/Examination.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <cstdint>
#include <span>

namespace lineup::validation {

/// Rates, frequencies and levels that no dialog makes: every kind of float there is, some ordinary ones.
[[nodiscard]] std::span<const float> HostileFloats();

/// Positions in the clip, before it, where times wrap, and at both ends of 64 bits.
[[nodiscard]] std::span<const std::int64_t> HostilePositions();

/// Numbers that no host sends, drawn from an examination's seed.
class HostileNumbers {
public:
    explicit HostileNumbers(Examination& examination) : mExamination(&examination) {}

    /// A listed float, an ordinary rate or any bits.
    [[nodiscard]] float Float();

    /// A listed position, one in the clip or any bits.
    [[nodiscard]] std::int64_t Position();

    /// A settings record of such floats. Its channel count is 0 to 8 or negative as an int, so that a
    /// request for it never needs more than kMostChannels buffers.
    [[nodiscard]] BarsAndToneInfo Settings();

private:
    Examination* mExamination;
};

/// The channels that audio of such settings writes, as far as they are known: all of a steady tone, two or
/// six of an identification sequence, none of an unknown one.
[[nodiscard]] std::size_t ChannelsWritten(const BarsAndToneInfo& settings);

/// The clip's own channels; none when the count is negative as an int.
[[nodiscard]] std::size_t ClipChannels(const BarsAndToneInfo& settings);

/// The settings in a failure's text.
[[nodiscard]] std::string Text(const BarsAndToneInfo& settings);

}  // namespace lineup::validation
