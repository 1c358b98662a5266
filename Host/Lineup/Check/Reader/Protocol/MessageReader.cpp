#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace lineup {

inline namespace parts {

namespace {

using decoding::Begin;
using decoding::Damage;
using decoding::End;
using decoding::EndCause;
using decoding::Hello;
using decoding::kMostValues;
using decoding::MessageHeader;
using decoding::MessageKind;
using decoding::Reading;
using decoding::Samples;
using decoding::Track;

constexpr std::size_t kBufferBytes = std::size_t{1} << 21;
constexpr std::size_t kLongestBody = sizeof(Samples) + kMostValues * sizeof(float);
static_assert(kLongestBody + sizeof(MessageHeader) <= kBufferBytes);

void Require(bool isRight, const char* what) {
    if (!isRight) {
        throw DecoderTalksNonsense(fmt::format("the decoder talks nonsense: {}", what));
    }
}

template <class Body>
Body Head(std::span<const std::byte> body) {
    Body head{};
    Require(body.size() >= sizeof head, "a message is too short");
    std::memcpy(&head, body.data(), sizeof head);
    return head;
}

template <class Body>
Body Whole(std::span<const std::byte> body) {
    Require(body.size() == sizeof(Body), "a message has another size than its kind");
    return Head<Body>(body);
}

}  // namespace

MessageReader::MessageReader(ByteInput& input) : mInput(&input), mBytes(kBufferBytes) {}

// Until there are `bytes` that have not been taken apart; false when the input ends before.
bool MessageReader::Fetch(std::size_t bytes) {
    if (mBytes.size() - mBegin < bytes) {
        std::memmove(mBytes.data(), mBytes.data() + mBegin, mEnd - mBegin);
        mEnd -= mBegin;
        mBegin = 0;
    }
    while (mEnd - mBegin < bytes) {
        const std::size_t count = mInput->Read(std::span(mBytes).subspan(mEnd));
        if (count == 0) {
            return false;
        }
        mEnd += count;
    }
    return true;
}

std::optional<DecoderMessage> MessageReader::Next() {
    if (mBegin == mEnd) {
        mBegin = mEnd = 0;
    }
    if (mStage == Stage::Ended || !Fetch(sizeof(MessageHeader))) {
        return std::nullopt;
    }
    const auto header = Head<MessageHeader>(std::span(mBytes).subspan(mBegin));
    Require(header.bytes <= kLongestBody && header.bytes % sizeof(float) == 0, "a message has no possible size");
    if (!Fetch(sizeof header + header.bytes)) {
        return std::nullopt;
    }
    const auto body = std::span(mBytes).subspan(mBegin + sizeof header, header.bytes);
    mBegin += sizeof header + header.bytes;
    return Parse(static_cast<MessageKind>(header.kind), body);
}

DecoderMessage MessageReader::Parse(MessageKind kind, std::span<const std::byte> body) {
    Require((kind == MessageKind::Hello) == (mStage == Stage::Start), "it greets at the beginning, and only there");
    switch (kind) {
        case MessageKind::Hello: {
            const auto hello = Whole<Hello>(body);
            Require(hello.version == decoding::kProtocolVersion, "it is of another version");
            mStage = Stage::Naming;
            return hello;
        }
        case MessageKind::Track:
            return ParseTrack(body);
        case MessageKind::Begin:
            return ParseBegin(body);
        case MessageKind::Samples:
            return ParseSamples(body);
        case MessageKind::Damage:
            return ParseDamage(body);
        case MessageKind::Reading:
            return ParseReading(body);
        case MessageKind::End: {
            const auto end = Whole<End>(body);
            Require(end.cause <= static_cast<std::uint32_t>(EndCause::RaggedEnd), "it ends for no known cause");
            mStage = Stage::Ended;
            return end;
        }
    }
    Require(false, "a message is of no known kind");
    return {};
}

DecoderMessage MessageReader::ParseTrack(std::span<const std::byte> body) {
    const auto track = Whole<Track>(body);
    Require(mStage == Stage::Naming && track.index == mTracks.size() && track.index < decoding::kMostTracks,
            "tracks are named once, in their order");
    Require(track.channels >= 1 && track.channels <= decoding::kMostChannels - mChannels,
            "a track has no possible channels");
    const auto isRate = [](std::uint32_t rate) { return rate >= 1 && rate <= decoding::kHighestRate; };
    Require(isRate(track.sampleRate) && isRate(track.recordedRate), "a track has no possible sample rate");
    Require(mTracks.empty() || track.sampleRate == mTracks.front().sampleRate, "tracks come at different sample rates");
    Require(track.bits <= 64 && track.flags <= decoding::kLossless, "a track is of no possible kind");
    mChannels += track.channels;
    mTracks.push_back(track);
    mEnds.push_back(0);
    return track;
}

DecoderMessage MessageReader::ParseBegin(std::span<const std::byte> body) {
    const auto begin = Whole<Begin>(body);
    Require(mStage == Stage::Naming && begin.tracks == mTracks.size() && !mTracks.empty(),
            "it begins without the tracks that it counts");
    Require(std::isfinite(begin.seconds) && begin.seconds >= 0, "a length is not a finite number of seconds");
    mStage = Stage::Running;
    return begin;
}

DecoderMessage MessageReader::ParseSamples(std::span<const std::byte> body) {
    const auto head = Head<Samples>(body);
    Require(mStage == Stage::Running && head.track < mTracks.size(), "samples are of no track");
    const Track& track = mTracks[head.track];
    Require(head.channels == track.channels && head.count >= 1, "samples are of other channels than their track");
    const std::uint64_t values = std::uint64_t{head.channels} * head.count;
    Require(values <= kMostValues && body.size() == sizeof head + values * sizeof(float),
            "a block of samples has another size than it says");
    std::int64_t& end = mEnds[head.track];
    const double farthest = end == 0 ? decoding::kLatestStartSeconds : decoding::kLongestGapSeconds;
    Require(head.position >= end && head.position < decoding::kLastPosition &&
                static_cast<double>(head.position - end) <= farthest * track.sampleRate,
            "samples are at no possible place");
    end = head.position + head.count;
    const auto samples = body.subspan(sizeof head);
    return DecodedSamples{.head = head, .values = {reinterpret_cast<const float*>(samples.data()), values}};
}

DecoderMessage MessageReader::ParseDamage(std::span<const std::byte> body) const {
    const auto damage = Whole<Damage>(body);
    Require(mStage == Stage::Running && damage.track < mTracks.size(), "damage is of no track");
    Require(damage.position >= 0 && damage.position < decoding::kLastPosition && damage.count >= 0 &&
                damage.count < decoding::kLastPosition,
            "damage is at no possible place");
    return damage;
}

DecoderMessage MessageReader::ParseReading(std::span<const std::byte> body) {
    const auto reading = Whole<Reading>(body);
    Require(reading.bytes > mBytesRead, "it goes on without going on");
    mBytesRead = reading.bytes;
    return reading;
}

std::string FieldText(std::span<const char> field) {
    std::string text(field.begin(), std::ranges::find(field, '\0'));
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

}  // namespace parts

}  // namespace lineup
