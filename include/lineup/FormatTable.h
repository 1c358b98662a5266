#pragma once

#include <lineup/Api.h>
#include <lineup/Rational.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

namespace lineup {

/// An option of an encoder or a muxer, by FFmpeg's name for it.
struct CodecOption {
    std::string_view name;
    std::string_view value;
};

/// What a video codec's values stand for.
enum class ColourKind {
    Video,  ///< legal range; BT.709 matrix from 720 lines on, BT.601 below
    Jpeg,   ///< what every JPEG decoder takes for granted: BT.601 matrix, full range, centred chroma
    Rgb,    ///< R'G'B' in full range
};

/// A video codec that files can be written in.
struct VideoCodec {
    std::string_view name;  ///< on the command line: "prores-hq"
    std::string_view description;
    std::string_view encoder;                ///< the FFmpeg encoder
    std::string_view pixelFormat;            ///< FFmpeg's name of the pixel format it is given
    ColourKind colour = ColourKind::Video;   ///< full range clips what lies below black and above white
    bool framesStandAlone = false;           ///< one encoded frame serves for every frame time
    std::span<const CodecOption> options{};  ///< set on the encoder
    std::string_view timecodeOption{};       ///< the encoder's option for the time code that MPEG-2 frames carry
    std::int64_t mostBitsPerSecond = 0;      ///< with largestQuantiser: a frame is no larger than this allows
    int largestQuantiser = 0;                ///< the quantiser is constant, from 1 to this; 0: the encoder's affair
    std::span<const Rational> frameRates{};  ///< those it can have; empty: any from 1 to 240
    int sizeStep = 2;                        ///< width and height are multiples of it
    int minWidth = 2;
    int minHeight = 2;
    int maxWidth = 8192;
    int maxHeight = 8192;
};

/// What samples are rounded to before they are encoded.
enum class SampleFormat { S16, S24, S32, F32 };

/// An audio codec that files can be written in.
struct AudioCodec {
    std::string_view name;  ///< on the command line: "pcm-s24"
    std::string_view description;
    std::string_view encoder;         ///< the FFmpeg encoder
    std::string_view surroundLayout;  ///< FFmpeg's layout for L, R, C, LFE, Ls, Rs that this codec knows
    SampleFormat samples = SampleFormat::S24;
    bool carriesLayout = false;            ///< says which channel is which, whatever the file format
    bool lossless = true;                  ///< decodes to the very samples that went in
    int bitRatePerChannel = 0;             ///< bits a second; 0 where the codec has no say
    std::span<const int> sampleRatesHz{};  ///< those it can have; empty: any
};

/// Who makes a file.
enum class FileKind {
    Movie,  ///< a muxer of the media library
    Wave,   ///< this library itself: sound alone
    Still,  ///< the picture's encoder alone
};

/// A kind of file, known by its extension.
struct FileFormat {
    std::string_view extension;  ///< lower case, without a dot: "mov"
    std::string_view description;
    FileKind kind = FileKind::Movie;
    std::string_view muxer{};                         ///< of a movie: the FFmpeg muxer
    std::span<const std::string_view> videoCodecs{};  ///< names; the first is the default; empty: no picture
    std::span<const std::string_view> audioCodecs{};  ///< names; the first is the default; empty: no sound
    std::span<const CodecOption> options{};           ///< set on the muxer
    std::span<const int> sampleRatesHz{};             ///< those it can hold; empty: any
    std::string_view timescaleOption{};               ///< the muxer's option for the unit of the whole file's times
    bool uniqueIdentifiers = false;                   ///< no two files are alike, even of the same settings
    bool needsLayoutInCodec = false;                  ///< cannot say itself which channel is which
    bool labelsMonoTracks = false;                    ///< says of a mono track which channel it is
    bool holdsTimecode = false;
    bool offersMonoTracks = false;  ///< ExportSettings::monoTracks may be set
    bool onlyMonoTracks = false;    ///< and is, whether it is set or not
};

/// Every kind of file, codec and codec, in the order a help text lists them. Static data; any thread.
LINEUP_API std::span<const FileFormat> FileFormats();
LINEUP_API std::span<const VideoCodec> VideoCodecs();
LINEUP_API std::span<const AudioCodec> AudioCodecs();

/// The entry that `name` names, or null. A file's format goes by its extension in either case.
LINEUP_API const FileFormat* FindFileFormat(const std::filesystem::path& target);
LINEUP_API const VideoCodec* FindVideoCodec(std::string_view name);
LINEUP_API const AudioCodec* FindAudioCodec(std::string_view name);

}  // namespace lineup
