#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace lineup {
inline namespace parts {

/// What samples are rounded to, as a report says it: "s16", "s24", "s32" or "f32".
LINEUP_API std::string_view SampleFormatName(SampleFormat format);

/// FFmpeg's name of the layout of one track of all channels, as the codec's own data say it.
LINEUP_API std::string LayoutOfAll(const AudioEncoding& encoding, std::size_t channels);

/// The same as the file says it beside the codec. QuickTime knows which order a codec puts which layout into.
LINEUP_API std::string LabelOfAll(const Container& container, const AudioEncoding& encoding, std::size_t channels);

/// FFmpeg's name of the layout of a mono track, and how the file says it of the channel that a ChannelLayout calls
/// `channel`: with the channel's name, in a file that can.
LINEUP_API std::string LayoutOfOne();
LINEUP_API std::string LabelOfOne(const Container& container, std::string_view channel);

}  // namespace parts
}  // namespace lineup
