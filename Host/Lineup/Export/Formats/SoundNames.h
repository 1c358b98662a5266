#pragma once

#include <lineup/Api.h>
#include <lineup/FormatTable.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace lineup {
inline namespace parts {

/// What samples are rounded to, as a report says it: "s16", "s24", "s32" or "f32".
LINEUP_API std::string_view SampleFormatName(SampleFormat format);

/// FFmpeg's name of the layout of one track of all channels.
LINEUP_API std::string LayoutOfAll(const AudioCodec& codec, std::size_t channels);

}  // namespace parts
}  // namespace lineup
