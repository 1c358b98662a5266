#pragma once

#include <lineup/Api.h>
#include <lineup/FormatTable.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

/// The rows that FormatTable.h shows to people, each with what it takes to write it.
namespace lineup {
inline namespace parts {

/// An option of an encoder or a muxer, by FFmpeg's name for it.
struct CodecOption {
    std::string_view name;
    std::string_view value;
};

/// What a video codec's values stand for.
enum class ColourKind {
    Video,  ///< legal range; BT.709 matrix from kFewestHdLines on, BT.601 below
    Jpeg,   ///< what every JPEG decoder takes for granted: BT.601 matrix, full range, centred chroma
    Rgb,    ///< R'G'B' in full range
};

/// A level of a codec: what a decoder of that level can take.
struct CodecLevel {
    int number;  ///< as the codec's headers count
    int maxWidth;
    int maxHeight;
    std::int64_t maxPixelsPerSecond;
    int bufferBits;  ///< that the decoder is told to have
};

struct VideoEncoding {
    VideoCodec codec;
    std::string_view encoder;                           ///< the FFmpeg encoder
    std::string_view pixelFormat;                       ///< FFmpeg's name of the pixel format it is given
    ColourKind colour = ColourKind::Video;              ///< full range clips what lies below black and above white
    bool framesStandAlone = false;                      ///< one encoded frame serves for every frame time
    std::span<const CodecOption> options{};             ///< set on the encoder
    std::span<const CodecOption> bottomFirstOptions{};  ///< set too where an encoder does not look at the picture
    int mostPixelsOfSlice = 0;               ///< pictures are cut into slices of no more; 0: the encoder's affair
    std::string_view timecodeOption{};       ///< the encoder's option for the time code that MPEG-2 frames carry
    std::int64_t constantBitsPerSecond = 0;  ///< pictures are filled up to it; 0: the encoder's affair
    std::span<const CodecLevel> levels{};  ///< the first that allows the picture is named; empty: the encoder's affair
    int matrixStep = 0;                    ///< of every frequency in the quantiser's matrix; 0: the codec's own
    int largestQuantiser = 0;              ///< the quantiser is constant, from 1 to this; 0: the encoder's affair
};

/// What samples are rounded to before they are encoded.
enum class SampleFormat { S16, S24, S32, F32 };

/// QuickTime's tag of the order that AAC's and ALAC's data have 5.1 in: C, L, R, Ls, Rs, LFE
/// (kAudioChannelLayoutTag_MPEG_5_1_D).
inline constexpr std::uint32_t kTagOfCodedSurround = 124U << 16U | 6U;

struct AudioEncoding {
    AudioCodec codec;
    std::string_view encoder;         ///< the FFmpeg encoder
    std::string_view surroundLayout;  ///< FFmpeg's layout for L, R, C, LFE, Ls, Rs that this codec knows
    SampleFormat samples = SampleFormat::S24;
    bool carriesLayout = false;     ///< says which channel is which, whatever the file format
    int bitRatePerChannel = 0;      ///< bits a second; 0 where the codec has no say
    std::uint32_t surroundTag = 0;  ///< QuickTime's tag of its 5.1, where MPEG-4 has none of its own
};

/// Who makes a file.
enum class FileKind {
    Movie,  ///< a muxer of the media library
    Wave,   ///< this library itself: sound alone
    Still,  ///< the picture's encoder alone
};

struct Container {
    FileFormat format;
    FileKind kind = FileKind::Movie;
    std::string_view muxer{};                    ///< of a movie: the FFmpeg muxer
    std::span<const CodecOption> options{};      ///< set on the muxer
    std::span<const CodecOption> pipeOptions{};  ///< instead, for a file that is written from front to back
    std::span<const CodecOption> tags{};         ///< what the file says of itself
    std::string_view timescaleOption{};          ///< the muxer's option for the unit of the whole file's times
    bool uniqueIdentifiers = false;              ///< no two files are alike, even of the same settings
    bool needsLayoutInCodec = false;             ///< cannot say itself which channel is which
    bool describesCleanPart = false;             ///< of the picture, in its head
    bool describesFields = false;                ///< there too, of every codec
    bool namesChannels = false;                  ///< says itself which channel is which, of a mono track too
    bool takesSurroundTags = false;              ///< beside a codec's own data
};

/// As FindVideoCodec and its siblings.
LINEUP_API const VideoEncoding* FindVideoEncoding(std::string_view name);
LINEUP_API const AudioEncoding* FindAudioEncoding(std::string_view name);
LINEUP_API const Container* FindContainer(const std::filesystem::path& target);

}  // namespace parts
}  // namespace lineup
