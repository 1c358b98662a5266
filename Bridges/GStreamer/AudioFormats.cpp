#include "Bridges/GStreamer/AudioFormats.h"

#include "Host/Lineup/Export/Samples/SamplePacking.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace gstreamer {

namespace {

using lineup::SampleFormat;

constexpr std::array<AudioFormat, 12> kAudioFormats = {{
    {GST_AUDIO_FORMAT_F32LE, SampleFormat::F32},
    {GST_AUDIO_FORMAT_F32BE, SampleFormat::F32, 0, true},
    {GST_AUDIO_FORMAT_F64LE, SampleFormat::F32, 8},
    {GST_AUDIO_FORMAT_F64BE, SampleFormat::F32, 8, true},
    {GST_AUDIO_FORMAT_S32LE, SampleFormat::S32},
    {GST_AUDIO_FORMAT_S32BE, SampleFormat::S32, 0, true},
    {GST_AUDIO_FORMAT_S24_32LE, SampleFormat::S24, 4},
    {GST_AUDIO_FORMAT_S24_32BE, SampleFormat::S24, 4, true},
    {GST_AUDIO_FORMAT_S24LE, SampleFormat::S24},
    {GST_AUDIO_FORMAT_S24BE, SampleFormat::S24, 0, true},
    {GST_AUDIO_FORMAT_S16LE, SampleFormat::S16},
    {GST_AUDIO_FORMAT_S16BE, SampleFormat::S16, 0, true},
}};

std::size_t BytesOf(const AudioFormat& format) {
    return format.widenedBytes > 0 ? format.widenedBytes : lineup::PackedBytes(format.samples);
}

// What is narrower than its place lies at the place's beginning: from the last to the first, nothing is overwritten
// that is still to be read.
void WidenFloats(std::uint8_t* packed, std::size_t count) {
    for (std::size_t i = count; i-- > 0;) {
        float sample = 0;
        std::memcpy(&sample, packed + i * sizeof(sample), sizeof(sample));
        const double wide{sample};
        std::memcpy(packed + i * sizeof(wide), &wide, sizeof(wide));
    }
}

void WidenS24(std::uint8_t* packed, std::size_t count) {
    for (std::size_t i = count; i-- > 0;) {
        const std::uint8_t* const narrow = packed + i * 3;
        const std::array<std::uint8_t, 4> wide = {narrow[0], narrow[1], narrow[2],
                                                  static_cast<std::uint8_t>((narrow[2] & 0x80U) != 0 ? 0xFF : 0)};
        std::ranges::copy(wide, packed + i * wide.size());
    }
}

}  // namespace

std::span<const AudioFormat> AudioFormats() {
    return kAudioFormats;
}

const AudioFormat* FindAudioFormat(GstAudioFormat format) {
    const auto* const found = std::ranges::find(kAudioFormats, format, &AudioFormat::format);
    return found == kAudioFormats.end() ? nullptr : found;
}

void PackAudio(std::span<const float* const> channels, std::size_t count, const AudioFormat& format,
               std::uint8_t* packed) {
    lineup::PackFrames(channels, count, format.samples, packed);
    const std::size_t samples = count * channels.size();
    if (format.widenedBytes > 0) {
        (format.samples == SampleFormat::F32 ? WidenFloats : WidenS24)(packed, samples);
    }
    if (format.bigEndian) {
        const std::size_t bytes = BytesOf(format);
        for (std::size_t i = 0; i < samples; ++i) {
            std::reverse(packed + i * bytes, packed + (i + 1) * bytes);
        }
    }
}

}  // namespace gstreamer
