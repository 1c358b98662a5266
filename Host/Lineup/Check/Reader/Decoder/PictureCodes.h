#pragma once

#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <cstdint>
#include <span>

namespace lineup::decoding {

/// The head of a decoded frame, all but its time. It has no planes where its kind cannot be read: codes in floating
/// point, in the memory of a device, from a sensor.
[[nodiscard]] Frame DescribePicture(const AVFrame& frame, const AVCodecContext& decoder);

/// Copies a line of a plane of the head's numbering, however the frame packs its codes.
void ReadCodes(const AVFrame& frame, std::uint32_t plane, std::uint32_t line, std::span<std::uint16_t> codes);

}  // namespace lineup::decoding
