#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// What the decoding program says to the program that started it, on a pipe: messages one after the other, each a
/// header and a body of a fixed layout in this machine's byte order.
///
///   Hello, then Track for each track from 0 on, Picture where there are pictures, then Begin, then Samples, Damage,
///   Frame, Lines, Arrival and Reading as they come, PictureEnd where there were pictures, then End.
///
/// Lines follow their Frame, plane after plane and from the top down, until the last plane is whole; no other Frame
/// comes before. Reading may come anywhere after Hello. End may come at any time after Hello, and nothing after it. The
/// program that listens believes none of it: MessageReader says what holds of what it lets through.
namespace lineup::decoding {

inline constexpr std::uint32_t kProtocolVersion = 5;

/// The descriptors that the decoding program is started with, beside standard error.
inline constexpr int kInputDescriptor = 0;    ///< the recording, where it is no URL
inline constexpr int kMessageDescriptor = 3;  ///< the pipe

inline constexpr std::size_t kMostTracks = 64;
inline constexpr std::size_t kMostChannels = 64;                      ///< of all tracks together
inline constexpr std::size_t kMostValues = std::size_t{1} << 18;      ///< count * channels of one message
inline constexpr std::uint32_t kHighestRate = 1U << 21;               ///< Hz
inline constexpr std::int64_t kLastPosition = std::int64_t{1} << 52;  ///< samples
inline constexpr double kLongestGapSeconds = 10;                      ///< within a track
inline constexpr double kLatestStartSeconds = 86400;                  ///< of a track after the first
inline constexpr std::uint32_t kMostPictureSide = 8192;               ///< pixels
inline constexpr std::uint32_t kMostPicturePixels = 1U << 25;         ///< of a frame
inline constexpr double kLastSecond = 1e9;                            ///< of a frame

enum class MessageKind : std::uint32_t {
    Hello = 1,
    Track,
    Begin,
    Samples,
    Damage,
    Reading,
    End,
    Picture,
    Frame,
    Lines,
    PictureEnd,
    Arrival
};

struct MessageHeader {
    std::uint32_t kind;
    std::uint32_t bytes;  ///< of the body
};

/// Text, zeros after it. What lies outside of printable ASCII arrives as '?'.
template <std::size_t kSize>
using TextField = std::array<char, kSize>;

/// Rights that the decoding program has given up, as bits of Hello::givenUp.
enum GivenUp : std::uint32_t {
    kSystemCalls = 1,  ///< the kernel lets through what decoding needs and nothing else
    kFiles = 2,        ///< no file can be opened; for a URL, none but the system's own can be read
    kMemory = 4,       ///< the address space has a limit
    kEverything = kSystemCalls | kFiles | kMemory,
};

struct Hello {
    std::uint32_t version;
    std::uint32_t givenUp;
};

enum TrackFlags : std::uint32_t { kLossy = 1, kLossless = 2 };

/// One track of sound.
struct Track {
    std::uint32_t index;         ///< from 0, in the order of the recording
    std::uint32_t sampleRate;    ///< Hz, 1 to kHighestRate, the same for all
    std::uint32_t channels;      ///< 1 to 64
    std::uint32_t bits;          ///< of a whole-numbered sample, up to 64; 0 where there is no such number
    std::uint32_t flags;         ///< TrackFlags; neither where it is not known
    std::uint32_t recordedRate;  ///< Hz, what the track has itself
    TextField<32> codec;
    TextField<64> layout;
};

/// All tracks have been named.
struct Begin {
    std::uint32_t tracks;   ///< at least 1 unless there are pictures
    std::uint32_t leftOut;  ///< channels that are more than kMostChannels
    double seconds;         ///< the recording's length as it says itself, 0 where it does not; finite
    TextField<64> container;
};

/// The head of a block of samples; count floats for each of the channels follow, channel after channel.
struct Samples {
    std::uint32_t track;
    std::uint32_t channels;  ///< the track's
    std::uint32_t count;     ///< of each channel, above 0
    std::uint32_t reserved;
    std::int64_t
        position;  ///< of the first, from the start of the recording; no earlier than where the track's last ended
};

/// Part of a track could not be read as it was recorded. Samples that are missing are silence for whoever listens.
struct Damage {
    std::uint32_t track;
    std::uint32_t reserved;
    std::int64_t position;
    std::int64_t count;  ///< samples, 0 where it is not known
    TextField<128> reason;
};

/// When samples came in, and how they are stamped. Of the first track alone.
struct Arrival {
    std::int64_t position;  ///< of the first of a packet
    double stamp;           ///< s by the sender's clock, from where the sound begins
    double arrived;         ///< s by this machine's clock, from when reading began; does not go back
};

/// Work goes on without samples. `bytes` is how many have been read so far, and grows from message to message.
struct Reading {
    std::int64_t bytes;
};

/// The pictures of the recording: of its first track of them.
struct Picture {
    double frameRate;       ///< frames a second, 0 where it is not known; finite
    std::uint32_t flags;    ///< TrackFlags; neither where it is not known
    std::uint32_t isStill;  ///< 1: a single picture, without time
    TextField<32> codec;
};

enum FrameFlags : std::uint32_t { kDamagedFrame = 1, kRgbFrame = 2, kCannotRead = 4, kMirrorTag = 8 };

/// The head of a decoded picture: its codes as the file has them, nothing converted. Lines follow, unless it is of a
/// kind that cannot be read.
struct Frame {
    double seconds;  ///< from where the sound begins, or the first picture where there is no sound
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t bits;            ///< of a code, 1 to 16
    std::uint32_t planes;          ///< 1: Y' alone; 3: Y', Cb, Cr, or R', G', B'
    std::uint32_t subsampleWidth;  ///< log2, of Cb and Cr; 0 to 2
    std::uint32_t subsampleHeight;
    std::uint32_t flags;   ///< FrameFlags
    float pixelAspect;     ///< a pixel's width to its height; 0 where the file does not say; finite
    TextField<16> matrix;  ///< as FFmpeg names them; empty where the file does not say
    TextField<16> primaries;
    TextField<16> transfer;
    TextField<16> range;
    TextField<16> chromaPlace;
    TextField<16> format;
    float turnTag;  ///< degrees clockwise that the file says to turn it by where it is shown; finite. kMirrorTag: and
                    ///< then to turn left and right over
    std::uint32_t reserved;
};

/// The head of some lines of a plane; count * the plane's width codes of 16 bits follow, and two bytes more where that
/// is an odd number.
struct Lines {
    std::uint32_t plane;
    std::uint32_t first;
    std::uint32_t count;
    std::uint32_t reserved;
};

/// How long the pictures of the recording last, by their time stamps; counted as Frame::seconds are.
struct PictureEnd {
    double start;
    double end;
    std::int64_t frames;  ///< that were seen, decoded or not
};

enum class EndCause : std::uint32_t {
    Whole,      ///< the end of the recording
    NotOpened,  ///< what it is cannot be told, or it cannot be reached
    NoSound,
    CutShort,  ///< reading or decoding failed on the way
    Stalled,   ///< nothing has arrived for too long
    NoMemory,
    RaggedEnd,  ///< its last packets cannot be decoded: it was cut off there
};

struct End {
    std::uint32_t cause;  ///< an EndCause
    std::uint32_t reserved;
    TextField<192> reason;  ///< empty for kWhole
};

static_assert(sizeof(Hello) == 8 && sizeof(Track) == 120 && sizeof(Begin) == 80 && sizeof(Samples) == 24 &&
              sizeof(Damage) == 152 && sizeof(Reading) == 8 && sizeof(End) == 200 && sizeof(Picture) == 48 &&
              sizeof(Frame) == 144 && sizeof(Lines) == 16 && sizeof(PictureEnd) == 24 && sizeof(Arrival) == 24);

}  // namespace lineup::decoding
