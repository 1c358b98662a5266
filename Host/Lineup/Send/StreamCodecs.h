#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"
#include "Host/Lineup/Send/Transport/Tables.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace lineup {
inline namespace parts {

/// A codec of pictures that streams carry.
struct StreamPictureCodec {
    VideoEncoding encoding;  ///< all but the length of a group, which is chosen
    TableEntry entry;
};

/// Who makes the sound's frames.
enum class SoundMaker {
    MediaLibrary,  ///< an encoder of it
    Aes3,          ///< this library: SMPTE 302M carries samples as AES3 does
};

/// A codec of sound that streams carry.
struct StreamSoundCodec {
    AudioEncoding encoding;
    TableEntry entry;
    std::uint8_t streamId = 0;
    SoundMaker maker = SoundMaker::MediaLibrary;
    bool wantsAdts = false;  ///< each frame needs a head of its own
    int mostChannels = 6;
    bool channelsInPairs = false;
};

/// The tables, and the rows called `name`, or null.
LINEUP_API std::span<const StreamPictureCodec> StreamPictureCodecs();
LINEUP_API std::span<const StreamSoundCodec> StreamSoundCodecs();
LINEUP_API const StreamPictureCodec* FindStreamPictureCodec(std::string_view name);
LINEUP_API const StreamSoundCodec* FindStreamSoundCodec(std::string_view name);

}  // namespace parts
}  // namespace lineup
