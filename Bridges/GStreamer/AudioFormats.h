#pragma once

#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <cstddef>
#include <cstdint>
#include <gst/audio/audio.h>
#include <span>
#include <string>

namespace gstreamer {

/// A format of the framework's, and how it is made of a file's samples.
struct AudioFormat {
    GstAudioFormat format = GST_AUDIO_FORMAT_UNKNOWN;
    lineup::SampleFormat samples = lineup::SampleFormat::F32;  ///< rounded as in files
    std::size_t widenedBytes = 0;                              ///< S24 in 4 bytes, F32 as 8; 0: as packed
    bool bigEndian = false;
};

/// The formats, the best first: floats are the plug-in's own bits.
[[nodiscard]] std::span<const AudioFormat> AudioFormats();

/// Null for one that is not offered.
[[nodiscard]] const AudioFormat* FindAudioFormat(GstAudioFormat format);

/// Packs `count` samples of all channels side by side, in the order of `channels`.
void PackAudio(std::span<const float* const> channels, std::size_t count, const AudioFormat& format,
               std::uint8_t* packed);

}  // namespace gstreamer
