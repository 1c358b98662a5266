#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"

namespace lineup::decoding {

/// Reads the recording from its descriptor, and seeks in it where it is a file. Throws std::bad_alloc.
[[nodiscard]] AvIoContext MakeDescriptorIo(bool canSeek);

}  // namespace lineup::decoding
