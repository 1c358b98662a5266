#pragma once

#include <lineup/BarsAndToneInfo.h>

#include <cstdint>
#include <string>
#include <vector>

namespace test {

/// Sound, a plane a channel.
using Planes = std::vector<std::vector<float>>;

/// What the plug-in itself gives for `settings` from sample `start` on, asked for in blocks of a millisecond,
/// or of ten where one is no whole number of samples; its channels in the order of files: L, R, C, LFE, Ls, Rs. The
/// rate must be a multiple of 100 Hz.
Planes PlugInSound(const lineup::BarsAndToneInfo& settings, std::int64_t start, std::int64_t count);

/// A steady tone as a new clip has it.
lineup::BarsAndToneInfo Tone(std::uint32_t numChannels, float rateHz = 48000.0F);

/// An ident in the channels that it is made for.
lineup::BarsAndToneInfo IdentSettings(lineup::IdentifierFormat format, float rateHz = 48000.0F);

/// The planes of floats that lie side by side.
Planes PlanesOf(const std::string& interleaved, std::size_t channels);

/// The first sample at which the two differ, as text; empty when they are the same to the bit.
std::string Difference(const Planes& planes, const Planes& expected);

}  // namespace test
