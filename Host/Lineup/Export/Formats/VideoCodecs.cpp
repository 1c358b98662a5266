#include "Host/Lineup/Export/Formats/EncoderTable.h"
#include "Host/Lineup/Export/Formats/Mpeg2.h"

#include <algorithm>
#include <array>

namespace lineup {

namespace {

// These encoders make the same bytes with any number of threads, one for each processor: threads share a picture's
// slices.
constexpr CodecOption kThreads = {"threads", "auto"};
constexpr CodecOption kThreadType = {"thread_type", "slice"};

// The finest quantiser and the finest matrix in every profile, the one that the format goes by unless told: the card
// takes a seventh of the bits that there are.
constexpr CodecOption kFinestMatrix = {"quant_mat", "default"};
constexpr CodecOption kConstantQuantiser = {"flags", "+qscale"};
constexpr CodecOption kFinestProresQuantiser = {"global_quality", "118"};
constexpr std::array<CodecOption, 6> kProresHq = {
    {{"profile", "hq"}, kFinestMatrix, kConstantQuantiser, kFinestProresQuantiser, kThreads, kThreadType}};
constexpr std::array<CodecOption, 6> kProres = {
    {{"profile", "standard"}, kFinestMatrix, kConstantQuantiser, kFinestProresQuantiser, kThreads, kThreadType}};
constexpr std::array<CodecOption, 6> kProres4444 = {
    {{"profile", "4444"}, kFinestMatrix, kConstantQuantiser, kFinestProresQuantiser, kThreads, kThreadType}};
// The encoder makes room for every quantiser up to the coarsest in every block; the card never needs one so coarse.
constexpr std::array<CodecOption, 4> kDnxhrHqx = {{{"profile", "dnxhr_hqx"}, {"qmax", "64"}, kThreads, kThreadType}};
// The bit rate chooses the table of 917,504 bytes a frame, whatever the frame rate.
constexpr std::array<CodecOption, 4> kDnxhd = {{{"b", "185000000"}, {"qmax", "64"}, kThreads, kThreadType}};
constexpr std::array<Rational, 7> kDnxhdFrameRates = {
    {{24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {50, 1}, {60000, 1001}, {60, 1}}};
constexpr std::array<Rational, 2> kDnxhdInterlacedFrameRates = {{{25, 1}, {30000, 1001}}};
constexpr std::array<CodecOption, 1> kOneThread = {{{"threads", "1"}}};
// FFV1 has 2^27 bits at most for a slice, as its encoder counts: each value of three planes in one bit more than it
// has.
constexpr int kFfv1MostPixelsOfSlice = (1 << 27) / (3 * 11);
constexpr std::array<CodecOption, 7> kFfv1 = {{
    {"level", "3"},
    {"g", "1"},
    {"coder", "range_tab"},
    {"context", "1"},
    {"slicecrc", "1"},
    kThreads,
    kThreadType,
}};
constexpr std::array<CodecOption, 3> kMjpeg = {{{"qmin", "1"}, {"global_quality", "118"}, {"flags", "+qscale"}}};

// Intra only, with the tables that suit intra frames of high quality, DC in 11 bits and all frequencies in steps of
// one, which is as fine as MPEG-2 goes; headers announce 50 Mbit/s. The number of threads decides where slices lie, so
// it is fixed: a file is the same on every machine.
constexpr std::int64_t kMpeg2BitsPerSecond = 50'000'000;
constexpr int kMpeg2LargestQuantiser = 28;  // the end of the non-linear scale as far as the encoder goes
constexpr std::array<CodecOption, 10> kMpeg2 = {{
    {"profile", "0"},
    {"g", "1"},
    {"b", "50000000"},
    {"maxrate", "50000000"},
    {"qmin", "1"},
    {"qmax", "28"},
    {"dc", "11"},
    {"intra_vlc", "1"},
    {"non_linear_quant", "1"},
    {"threads", "2"},
}};

// No B frames: every decoder then shows the first frame at time 0, with or without an edit list.
constexpr std::array<CodecOption, 7> kH264 = {{
    {"profile", "high"},
    {"preset", "medium"},
    {"crf", "8"},
    {"bf", "0"},
    {"g", "50"},
    {"threads", "2"},
    {"x264-params", "force-cfr=1"},  // and says that the frame rate is fixed
}};

// The encoder's own headers say which field is first before it sees one.
constexpr std::array<CodecOption, 1> kH264BottomFirst = {{{"x264-params", "force-cfr=1:bff=1"}}};

constexpr std::array<VideoEncoding, 12> kVideoEncodings = {{
    {.codec = {.name = "prores-hq", .description = "ProRes 422 HQ, 10 bits", .interlaced = true},
     .encoder = "prores_ks",
     .pixelFormat = "yuv422p10le",
     .framesStandAlone = true,
     .options = kProresHq},
    {.codec = {.name = "prores", .description = "ProRes 422, 10 bits", .interlaced = true},
     .encoder = "prores_ks",
     .pixelFormat = "yuv422p10le",
     .framesStandAlone = true,
     .options = kProres},
    {.codec = {.name = "prores-4444", .description = "ProRes 4444 without alpha, 10 bits", .interlaced = true},
     .encoder = "prores_ks",
     .pixelFormat = "yuv444p10le",
     .framesStandAlone = true,
     .options = kProres4444},
    {.codec = {.name = "dnxhr-hqx",
               .description = "DNxHR HQX, 4:2:2, 10 bits; 256x120 and larger",
               .minWidth = 256,
               .minHeight = 120},
     .encoder = "dnxhd",
     .pixelFormat = "yuv422p10le",
     .framesStandAlone = true,
     .options = kDnxhrHqx},
    {.codec = {.name = "dnxhd",
               .description = "DNxHD, 4:2:2, 10 bits, 185 Mbit/s at 25 frames a second, 220 at 29.97; 1920x1080",
               .frameRates = kDnxhdFrameRates,
               .minWidth = 1920,
               .minHeight = 1080,
               .maxWidth = 1920,
               .maxHeight = 1080,
               .interlaced = true,
               .interlacedFrameRates = kDnxhdInterlacedFrameRates},
     .encoder = "dnxhd",
     .pixelFormat = "yuv422p10le",
     .framesStandAlone = true,
     .options = kDnxhd},
    {.codec = {.name = "v210", .description = "uncompressed 4:2:2, 10 bits", .interlaced = true},
     .encoder = "v210",
     .pixelFormat = "yuv422p10le",
     .framesStandAlone = true,
     .options = kOneThread},
    {.codec = {.name = "uyvy422", .description = "uncompressed 4:2:2, 8 bits", .interlaced = true},
     .encoder = "rawvideo",
     .pixelFormat = "uyvy422",
     .framesStandAlone = true,
     .options = kOneThread},
    {.codec = {.name = "ffv1",
               .description = "FFV1 version 3, lossless 4:2:2, 10 bits, every frame on its own and with checksums",
               .minWidth = 4,
               .interlaced = true},
     .encoder = "ffv1",
     .pixelFormat = "yuv422p10le",
     .framesStandAlone = true,
     .options = kFfv1,
     .mostPixelsOfSlice = kFfv1MostPixelsOfSlice},
    {.codec = {.name = "h264",
               .description = "H.264 High, 4:2:0, 8 bits, at high quality",
               .interlaced = true,
               .interlacedHeightStep = 4},
     .encoder = "libx264",
     .pixelFormat = "yuv420p",
     .options = kH264,
     .bottomFirstOptions = kH264BottomFirst},
    {.codec = {.name = "mpeg2-422",
               .description = "MPEG-2 4:2:2, 8 bits, intra frames only, constant 50 Mbit/s; up to 1920x1088",
               .frameRates = kMpeg2FrameRates,
               .maxWidth = kMpeg2Highest.maxWidth,
               .maxHeight = kMpeg2Highest.maxHeight,
               .maxPixelsPerSecond = kMpeg2Highest.maxPixelsPerSecond,
               .interlaced = true},
     .encoder = "mpeg2video",
     .pixelFormat = "yuv422p",
     .framesStandAlone = true,
     .options = kMpeg2,
     .timecodeOption = "gop_timecode",
     .constantBitsPerSecond = kMpeg2BitsPerSecond,
     .levels = kMpeg2Levels,
     .matrixStep = 16,
     .largestQuantiser = kMpeg2LargestQuantiser},
    {.codec = {.name = "mjpeg",
               .description = "Motion JPEG, 4:2:2, 8 bits, full range: below black and above white are clipped"},
     .encoder = "mjpeg",
     .pixelFormat = "yuv422p",
     .colour = ColourKind::Jpeg,
     .framesStandAlone = true,
     .options = kMjpeg,
     .matrixStep = 8},
    {.codec = {.name = "png",
               .description = "PNG, lossless RGB, 8 bits, full range: below black and above white are clipped",
               .sizeStep = 1,
               .minWidth = 1,
               .minHeight = 1},
     .encoder = "png",
     .pixelFormat = "rgb24",
     .colour = ColourKind::Rgb,
     .framesStandAlone = true,
     .options = kOneThread},
}};

// What people choose from.
constexpr auto kOfferedVideo = [] {
    std::array<VideoCodec, kVideoEncodings.size()> codecs;
    std::ranges::transform(kVideoEncodings, codecs.begin(), &VideoEncoding::codec);
    return codecs;
}();

}  // namespace

std::span<const VideoCodec> VideoCodecs() {
    return kOfferedVideo;
}

const VideoCodec* FindVideoCodec(std::string_view name) {
    const auto* const found = std::ranges::find(kOfferedVideo, name, &VideoCodec::name);
    return found == kOfferedVideo.end() ? nullptr : found;
}

inline namespace parts {

const VideoEncoding* FindVideoEncoding(std::string_view name) {
    const auto* const found =
        std::ranges::find(kVideoEncodings, name, [](const VideoEncoding& row) { return row.codec.name; });
    return found == kVideoEncodings.end() ? nullptr : found;
}

}  // namespace parts
}  // namespace lineup
