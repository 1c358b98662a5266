#pragma once

#include <lineup/Api.h>
#include <lineup/FormatTable.h>

#include <span>

namespace lineup {

/// The codecs that streams can be sent in, in the order a help text lists them; the first is the default. Static data;
/// any thread. CheckSend says whether choices go together.
LINEUP_API std::span<const VideoCodec> StreamVideoCodecs();
LINEUP_API std::span<const AudioCodec> StreamAudioCodecs();

}  // namespace lineup
