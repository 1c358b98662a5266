#include "Host/Lineup/Export/Formats/EncoderTable.h"

#include <algorithm>
#include <array>

namespace lineup {

namespace {

// What AAC can signal.
constexpr std::array<int, 13> kAacSampleRatesHz = {7350,  8000,  11025, 12000, 16000, 22050, 24000,
                                                   32000, 44100, 48000, 64000, 88200, 96000};

constexpr std::string_view kSideLayout = "5.1(side)";

// AAC and ALAC have one way to say 5.1, which FFmpeg reads as surrounds at the back; the order of the
// channels is the same.
constexpr std::string_view kBackLayout = "5.1";

constexpr std::array<AudioEncoding, 7> kAudioEncodings = {{
    {.codec = {.name = "pcm-s24", .description = "uncompressed, 24 bits"},
     .encoder = "pcm_s24le",
     .surroundLayout = kSideLayout,
     .samples = SampleFormat::S24},
    {.codec = {.name = "pcm-s16", .description = "uncompressed, 16 bits"},
     .encoder = "pcm_s16le",
     .surroundLayout = kSideLayout,
     .samples = SampleFormat::S16},
    {.codec = {.name = "pcm-s32", .description = "uncompressed, 32 bits"},
     .encoder = "pcm_s32le",
     .surroundLayout = kSideLayout,
     .samples = SampleFormat::S32},
    {.codec = {.name = "pcm-f32", .description = "uncompressed, 32-bit floating point: the very samples of the clip"},
     .encoder = "pcm_f32le",
     .surroundLayout = kSideLayout,
     .samples = SampleFormat::F32},
    {.codec = {.name = "flac", .description = "FLAC, lossless, 24 bits"},
     .encoder = "flac",
     .surroundLayout = kSideLayout,
     .samples = SampleFormat::S24,
     .carriesLayout = true},
    {.codec = {.name = "alac", .description = "Apple Lossless, 24 bits"},
     .encoder = "alac",
     .surroundLayout = kBackLayout,
     .samples = SampleFormat::S24,
     .carriesLayout = true,
     .surroundTag = kTagOfCodedSurround},
    {.codec = {.name = "aac",
               .description = "AAC-LC, 160 kbit/s a channel",
               .lossless = false,
               .sampleRatesHz = kAacSampleRatesHz},
     .encoder = "aac",
     .surroundLayout = kBackLayout,
     .samples = SampleFormat::F32,
     .carriesLayout = true,
     .bitRatePerChannel = 160000},
}};

// What people choose from.
constexpr auto kOfferedAudio = [] {
    std::array<AudioCodec, kAudioEncodings.size()> codecs;
    std::ranges::transform(kAudioEncodings, codecs.begin(), &AudioEncoding::codec);
    return codecs;
}();

}  // namespace

std::span<const AudioCodec> AudioCodecs() {
    return kOfferedAudio;
}

const AudioCodec* FindAudioCodec(std::string_view name) {
    const auto* const found = std::ranges::find(kOfferedAudio, name, &AudioCodec::name);
    return found == kOfferedAudio.end() ? nullptr : found;
}

inline namespace parts {

const AudioEncoding* FindAudioEncoding(std::string_view name) {
    const auto* const found =
        std::ranges::find(kAudioEncodings, name, [](const AudioEncoding& row) { return row.codec.name; });
    return found == kAudioEncodings.end() ? nullptr : found;
}

}  // namespace parts
}  // namespace lineup
