#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace gstreamer {

inline constexpr int kMostChannels = 6;

/// The plug-in's channels of a clip that has `count` of them, 1 to kMostChannels, in the order of the framework's,
/// which is that of files: place i of a sample holds the plug-in's channel [i].
[[nodiscard]] std::vector<std::size_t> ChannelOrder(int count);

/// Which speakers these are, as the framework numbers them, a bit each: surround channels at the sides or at the rear,
/// which many elements take for the only ones. 0 for one channel.
[[nodiscard]] std::uint64_t SpeakersOf(int count, bool rear);

}  // namespace gstreamer
