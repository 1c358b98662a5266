#pragma once

#include <lineup/Api.h>

#include <span>
#include <string_view>

namespace lineup {

/// How the channels of a clip are named, and in which order files and sound devices want them.
struct ChannelLayout {
    std::string_view name;                       ///< "mono", "stereo", "5.1"
    std::span<const std::string_view> channels;  ///< names in the plug-in's order: "L", "R", ...
    std::span<const int> fileOrder;              ///< fileOrder[i] is the plug-in's channel at place i of a file
};

/// The layouts a clip can have, fewest channels first.
LINEUP_API std::span<const ChannelLayout> ChannelLayouts();

/// The layout of a clip with `numChannels` channels, or null.
LINEUP_API const ChannelLayout* FindChannelLayout(int numChannels);

/// The layout called `name`, or null.
LINEUP_API const ChannelLayout* FindChannelLayout(std::string_view name);

}  // namespace lineup
