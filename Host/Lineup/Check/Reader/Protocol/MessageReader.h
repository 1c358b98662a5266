#pragma once

#include <lineup/Api.h>
#include <lineup/Error.h>
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lineup {

inline namespace parts {

/// Where bytes come from.
class ByteInput {
public:
    ByteInput() = default;
    virtual ~ByteInput() = default;
    ByteInput(const ByteInput&) = delete;
    ByteInput& operator=(const ByteInput&) = delete;

    /// Fills the beginning of `bytes` and returns how many there are: at least 1, and 0 at the end.
    virtual std::size_t Read(std::span<std::byte> bytes) = 0;
};

/// The decoding program has said what it may not.
class LINEUP_API DecoderTalksNonsense : public Error {
public:
    using Error::Error;
};

/// A block of samples: values[c * count + i] is sample i of channel c of the track. Any float may be among them.
struct DecodedSamples {
    decoding::Samples head{};
    std::span<const float> values;
};

/// Some lines of the frame that was named last: codes[l * width + x], width that of the plane; none above the frame's
/// bits.
struct DecodedLines {
    decoding::Lines head{};
    std::span<const std::uint16_t> codes;
    bool isLast = false;  ///< the frame is whole
};

using DecoderMessage = std::variant<decoding::Hello, decoding::Track, decoding::Begin, DecodedSamples, decoding::Damage,
                                    decoding::Reading, decoding::End, decoding::Picture, decoding::Frame, DecodedLines,
                                    decoding::PictureEnd, decoding::Arrival>;

/// The size of a plane of `frame`.
[[nodiscard]] LINEUP_API std::size_t PlaneWidth(const decoding::Frame& frame, std::uint32_t plane);
[[nodiscard]] LINEUP_API std::size_t PlaneHeight(const decoding::Frame& frame, std::uint32_t plane);

/// Takes messages of the decoding program apart, and lets nothing through that does not keep to decoding/Messages.h:
/// kinds, sizes, order, numbers and ranges. Memory does not grow with what comes in.
class LINEUP_API MessageReader {
public:
    explicit MessageReader(ByteInput& input);

    /// The next message, or nothing when the input ends. After End there is nothing more. What it points at holds until
    /// the next call. Throws DecoderTalksNonsense, and what the input throws.
    [[nodiscard]] std::optional<DecoderMessage> Next();

    /// The tracks that have been named so far.
    [[nodiscard]] const std::vector<decoding::Track>& Tracks() const noexcept { return mTracks; }

private:
    bool Fetch(std::size_t bytes);
    [[nodiscard]] DecoderMessage Parse(decoding::MessageKind kind, std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParseTrack(std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParseBegin(std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParseSamples(std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParseDamage(std::span<const std::byte> body) const;
    [[nodiscard]] DecoderMessage ParsePicture(std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParseFrame(std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParseLines(std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParsePictureEnd(std::span<const std::byte> body) const;
    [[nodiscard]] DecoderMessage ParseArrival(std::span<const std::byte> body);
    [[nodiscard]] DecoderMessage ParseReading(std::span<const std::byte> body);

    enum class Stage : std::uint8_t { Start, Naming, Running, Ended };

    ByteInput* mInput;
    std::vector<std::byte> mBytes;
    std::size_t mBegin = 0;  // of what has not been taken apart
    std::size_t mEnd = 0;
    Stage mStage = Stage::Start;
    std::vector<decoding::Track> mTracks;
    std::vector<std::int64_t> mEnds;  // one a track: where its samples end so far
    std::uint32_t mChannels = 0;
    bool mHasPicture = false;
    decoding::Frame mFrame{};
    std::uint32_t mNextPlane = 0;  // of the frame, as are the lines; all planes are there where no frame is under way
    std::uint32_t mNextLine = 0;
    std::int64_t mBytesRead = 0;
    double mArrived = 0;
};

/// What a text field holds, readable as it is: up to the first zero, and '?' for what is not printable ASCII.
[[nodiscard]] LINEUP_API std::string FieldText(std::span<const char> field);

}  // namespace parts

}  // namespace lineup
