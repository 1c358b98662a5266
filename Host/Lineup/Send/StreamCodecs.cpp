#include "Host/Lineup/Send/StreamCodecs.h"

#include <lineup/StreamTable.h>
#include "Host/Lineup/Export/Formats/Mpeg2.h"

#include <algorithm>
#include <array>

namespace lineup {
inline namespace parts {

namespace {

// No picture is shown in another order than sent, and each begins with a delimiter, as transport streams need it.
// One thread: its bytes do not depend on the machine's processors. No look ahead, and nothing that comes of it: in one
// of twenty processes it leads to other bytes, as it reads memory that the encoder has not written, and two senders are
// to be alike; of a picture that does not move it knows nothing new.
constexpr std::array<CodecOption, 10> StreamH264Options(std::string_view profile) {
    return {{
        {"preset", "medium"},
        {"crf", "14"},
        {"bf", "0"},
        {"sc_threshold", "0"},
        {"aud", "1"},
        {"mbtree", "0"},
        {"rc-lookahead", "0"},
        {"weightp", "none"},
        {"threads", "1"},
        {"profile", profile},
    }};
}
constexpr auto kStreamH264 = StreamH264Options("high");
constexpr auto kStreamH264Of422 = StreamH264Options("high422");
constexpr std::array<CodecOption, 1> kStreamBottomFirst = {{{"x264-params", "bff=1"}}};

// A constant quantiser, fine for a card. Headers announce what the level allows.
constexpr std::array<CodecOption, 6> kStreamMpeg2 = {{
    {"profile", "4"},
    {"bf", "0"},
    {"flags", "+qscale"},
    {"global_quality", "236"},
    {"b", "15000000"},
    {"threads", "1"},
}};
constexpr std::array<CodecOption, 8> kStreamMpeg2Of422 = {{
    {"profile", "0"},
    {"bf", "0"},
    {"flags", "+qscale"},
    {"global_quality", "236"},
    {"b", "50000000"},
    {"dc", "10"},
    {"intra_vlc", "1"},
    {"threads", "1"},
}};

constexpr StreamPictureCodec H264Row(std::string_view name, std::string_view description, std::string_view pixelFormat,
                                     std::span<const CodecOption> options) {
    return {
        .encoding = {.codec = {.name = name, .description = description, .interlaced = true, .interlacedHeightStep = 4},
                     .encoder = "libx264",
                     .pixelFormat = pixelFormat,
                     .options = options,
                     .bottomFirstOptions = kStreamBottomFirst},
        .entry = {.type = 0x1B}};
}

constexpr StreamPictureCodec Mpeg2Row(std::string_view name, std::string_view description, std::string_view pixelFormat,
                                      std::span<const CodecOption> options) {
    return {.encoding = {.codec = {.name = name,
                                   .description = description,
                                   .frameRates = kMpeg2FrameRates,
                                   .maxWidth = kMpeg2Highest.maxWidth,
                                   .maxHeight = kMpeg2Highest.maxHeight,
                                   .maxPixelsPerSecond = kMpeg2Highest.maxPixelsPerSecond,
                                   .interlaced = true},
                         .encoder = "mpeg2video",
                         .pixelFormat = pixelFormat,
                         .options = options},
            .entry = {.type = 0x02}};
}

constexpr std::array<StreamPictureCodec, 4> kStreamPictures = {{
    H264Row("h264", "H.264 High, 4:2:0, 8 bits", "yuv420p", kStreamH264),
    H264Row("h264-422", "H.264 High 4:2:2, 10 bits", "yuv422p10le", kStreamH264Of422),
    Mpeg2Row("mpeg2", "MPEG-2 Main, 4:2:0, 8 bits; up to 1920x1088", "yuv420p", kStreamMpeg2),
    Mpeg2Row("mpeg2-422", "MPEG-2 4:2:2, 8 bits; up to 1920x1088", "yuv422p", kStreamMpeg2Of422),
}};

constexpr std::array<int, 8> kStreamAacRates = {96000, 48000, 44100, 32000, 24000, 22050, 16000, 8000};
constexpr std::array<int, 3> kStreamAc3Rates = {48000, 44100, 32000};
constexpr std::array<int, 6> kStreamMp2Rates = {48000, 44100, 32000, 24000, 22050, 16000};
constexpr std::array<int, 1> kStream302mRates = {48000};
constexpr std::uint8_t kMpegSound = 0xC0;
constexpr std::uint8_t kPrivateSound = 0xBD;

constexpr std::array<StreamSoundCodec, 4> kStreamSounds = {{
    {.encoding = {.codec = {.name = "aac",
                            .description = "AAC-LC, 160 kbit/s a channel",
                            .lossless = false,
                            .sampleRatesHz = kStreamAacRates},
                  .encoder = "aac",
                  .surroundLayout = "5.1",
                  .samples = SampleFormat::F32,
                  .carriesLayout = true,
                  .bitRatePerChannel = 160000},
     .entry = {.type = 0x0F},
     .streamId = kMpegSound,
     .wantsAdts = true},
    {.encoding = {.codec = {.name = "ac3",
                            .description = "AC-3, 96 kbit/s a channel",
                            .lossless = false,
                            .sampleRatesHz = kStreamAc3Rates},
                  .encoder = "ac3",
                  .surroundLayout = "5.1(side)",
                  .samples = SampleFormat::F32,
                  .carriesLayout = true,
                  .bitRatePerChannel = 96000},
     .entry = {.type = 0x81, .registration = "AC-3"},
     .streamId = kPrivateSound},
    {.encoding = {.codec = {.name = "mp2",
                            .description = "MPEG layer 2, 192 kbit/s a channel; two channels at most",
                            .lossless = false,
                            .sampleRatesHz = kStreamMp2Rates},
                  .encoder = "mp2",
                  .surroundLayout = "stereo",
                  .samples = SampleFormat::S16,
                  .carriesLayout = true,
                  .bitRatePerChannel = 192000},
     .entry = {.type = 0x03},
     .streamId = kMpegSound,
     .mostChannels = 2},
    {.encoding = {.codec = {.name = "s302m",
                            .description = "SMPTE 302M: uncompressed, 24 bits, 48 kHz; two or six channels",
                            .sampleRatesHz = kStream302mRates},
                  .encoder = "s302m",
                  .surroundLayout = "5.1(side)",
                  .samples = SampleFormat::S24,
                  .carriesLayout = true},
     .entry = {.type = 0x06, .registration = "BSSD"},
     .streamId = kPrivateSound,
     .maker = SoundMaker::Aes3,
     .channelsInPairs = true},
}};

template <class Row>
const Row* FindStreamRow(std::span<const Row> rows, std::string_view name) {
    const auto found = std::ranges::find(rows, name, [](const Row& row) { return row.encoding.codec.name; });
    return found == rows.end() ? nullptr : &*found;
}

}  // namespace

std::span<const StreamPictureCodec> StreamPictureCodecs() {
    return kStreamPictures;
}

std::span<const StreamSoundCodec> StreamSoundCodecs() {
    return kStreamSounds;
}

const StreamPictureCodec* FindStreamPictureCodec(std::string_view name) {
    return FindStreamRow(StreamPictureCodecs(), name);
}

const StreamSoundCodec* FindStreamSoundCodec(std::string_view name) {
    return FindStreamRow(StreamSoundCodecs(), name);
}

}  // namespace parts

std::span<const VideoCodec> StreamVideoCodecs() {
    static const auto codecs = [] {
        std::array<VideoCodec, kStreamPictures.size()> offered;
        std::ranges::transform(kStreamPictures, offered.begin(), [](const auto& row) { return row.encoding.codec; });
        return offered;
    }();
    return codecs;
}

std::span<const AudioCodec> StreamAudioCodecs() {
    static const auto codecs = [] {
        std::array<AudioCodec, kStreamSounds.size()> offered;
        std::ranges::transform(kStreamSounds, offered.begin(), [](const auto& row) { return row.encoding.codec; });
        return offered;
    }();
    return codecs;
}

}  // namespace lineup
