#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"

#include "Host/Lineup/Check/Reader/Protocol/MessageBody.h"

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
    const auto header = HeadOfBody<MessageHeader>(std::span(mBytes).subspan(mBegin));
    RequireSense(header.bytes <= kLongestBody && header.bytes % sizeof(float) == 0, "a message has no possible size");
    if (!Fetch(sizeof header + header.bytes)) {
        return std::nullopt;
    }
    const auto body = std::span(mBytes).subspan(mBegin + sizeof header, header.bytes);
    mBegin += sizeof header + header.bytes;
    return Parse(static_cast<MessageKind>(header.kind), body);
}

DecoderMessage MessageReader::Parse(MessageKind kind, std::span<const std::byte> body) {
    RequireSense((kind == MessageKind::Hello) == (mStage == Stage::Start),
                 "it greets at the beginning, and only there");
    switch (kind) {
        case MessageKind::Hello: {
            const auto hello = WholeBody<Hello>(body);
            RequireSense(hello.version == decoding::kProtocolVersion, "it is of another version");
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
        case MessageKind::Picture:
            return ParsePicture(body);
        case MessageKind::Frame:
            return ParseFrame(body);
        case MessageKind::Lines:
            return ParseLines(body);
        case MessageKind::PictureEnd:
            return ParsePictureEnd(body);
        case MessageKind::Arrival:
            return ParseArrival(body);
        case MessageKind::End: {
            const auto end = WholeBody<End>(body);
            RequireSense(end.cause <= static_cast<std::uint32_t>(EndCause::RaggedEnd), "it ends for no known cause");
            mStage = Stage::Ended;
            return end;
        }
    }
    RequireSense(false, "a message is of no known kind");
    return {};
}

DecoderMessage MessageReader::ParseTrack(std::span<const std::byte> body) {
    const auto track = WholeBody<Track>(body);
    RequireSense(mStage == Stage::Naming && track.index == mTracks.size() && track.index < decoding::kMostTracks,
                 "tracks are named once, in their order");
    RequireSense(track.channels >= 1 && track.channels <= decoding::kMostChannels - mChannels,
                 "a track has no possible channels");
    const auto isRate = [](std::uint32_t rate) { return rate >= 1 && rate <= decoding::kHighestRate; };
    RequireSense(isRate(track.sampleRate) && isRate(track.recordedRate), "a track has no possible sample rate");
    RequireSense(mTracks.empty() || track.sampleRate == mTracks.front().sampleRate,
                 "tracks come at different sample rates");
    RequireSense(track.bits <= 64 && track.flags <= decoding::kLossless, "a track is of no possible kind");
    mChannels += track.channels;
    mTracks.push_back(track);
    mEnds.push_back(0);
    return track;
}

DecoderMessage MessageReader::ParseBegin(std::span<const std::byte> body) {
    const auto begin = WholeBody<Begin>(body);
    RequireSense(mStage == Stage::Naming && begin.tracks == mTracks.size() && (!mTracks.empty() || mHasPicture),
                 "it begins without the tracks that it counts");
    RequireSense(std::isfinite(begin.seconds) && begin.seconds >= 0, "a length is no number of seconds");
    mStage = Stage::Running;
    return begin;
}

DecoderMessage MessageReader::ParseSamples(std::span<const std::byte> body) {
    const auto head = HeadOfBody<Samples>(body);
    RequireSense(mStage == Stage::Running && head.track < mTracks.size(), "samples are of no track");
    const Track& track = mTracks[head.track];
    RequireSense(head.channels == track.channels && head.count >= 1, "samples are of other channels than their track");
    const std::uint64_t values = std::uint64_t{head.channels} * head.count;
    RequireSense(values <= kMostValues && body.size() == sizeof head + values * sizeof(float),
                 "a block of samples has another size than it says");
    std::int64_t& end = mEnds[head.track];
    const double farthest = end == 0 ? decoding::kLatestStartSeconds : decoding::kLongestGapSeconds;
    RequireSense(head.position >= end && head.position < decoding::kLastPosition &&
                     static_cast<double>(head.position - end) <= farthest * track.sampleRate,
                 "samples are at no possible place");
    end = head.position + head.count;
    const auto samples = body.subspan(sizeof head);
    return DecodedSamples{.head = head, .values = {reinterpret_cast<const float*>(samples.data()), values}};
}

DecoderMessage MessageReader::ParseDamage(std::span<const std::byte> body) const {
    const auto damage = WholeBody<Damage>(body);
    RequireSense(mStage == Stage::Running && damage.track < mTracks.size(), "damage is of no track");
    RequireSense(damage.position >= 0 && damage.position < decoding::kLastPosition && damage.count >= 0 &&
                     damage.count < decoding::kLastPosition,
                 "damage is at no possible place");
    return damage;
}

DecoderMessage MessageReader::ParseReading(std::span<const std::byte> body) {
    const auto reading = WholeBody<Reading>(body);
    RequireSense(reading.bytes > mBytesRead, "it goes on without going on");
    mBytesRead = reading.bytes;
    return reading;
}

DecoderMessage MessageReader::ParseArrival(std::span<const std::byte> body) {
    const auto arrival = WholeBody<decoding::Arrival>(body);
    RequireSense(mStage == Stage::Running && !mTracks.empty(), "something arrives for no track");
    RequireSense(arrival.position >= 0 && arrival.position < decoding::kLastPosition,
                 "it arrives at no possible place");
    RequireSense(std::abs(arrival.stamp) <= decoding::kLastSecond && arrival.arrived >= mArrived &&
                     arrival.arrived <= decoding::kLastSecond,
                 "it arrives at no possible time");
    mArrived = arrival.arrived;
    return arrival;
}

std::string FieldText(std::span<const char> field) {
    std::string text(field.begin(), std::ranges::find(field, '\0'));
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

}  // namespace parts

}  // namespace lineup
