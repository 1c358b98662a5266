#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"

namespace lineup::decoding {

/// A decoder for a stream of a recording, to be told more before it is opened. Throws EarlyEnd where the libraries have
/// none.
[[nodiscard]] AvCodecContext DecoderFor(const AVStream& stream);

/// Throws EarlyEnd where the decoder does not take the stream.
void OpenDecoder(AVCodecContext& decoder);

}  // namespace lineup::decoding
