#pragma once

#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"
#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace test {

/// What a decoder says, put together by hand: a header and a body a message.
class Words {
public:
    template <class Body>
    Words& Add(lineup::decoding::MessageKind kind, const Body& body, std::span<const float> values = {}) {
        Header(kind, static_cast<std::uint32_t>(sizeof body + values.size_bytes()));
        Append(&body, sizeof body);
        Append(values.data(), values.size_bytes());
        return *this;
    }

    Words& Header(lineup::decoding::MessageKind kind, std::uint32_t bytes) {
        const lineup::decoding::MessageHeader header{.kind = static_cast<std::uint32_t>(kind), .bytes = bytes};
        Append(&header, sizeof header);
        return *this;
    }
    Words& Hello() { return Add(lineup::decoding::MessageKind::Hello, RightHello()); }
    Words& Track(std::uint32_t index, std::uint32_t channels = 1) {
        return Add(lineup::decoding::MessageKind::Track, RightTrack(index, channels));
    }
    Words& Begin(std::uint32_t tracks) { return Add(lineup::decoding::MessageKind::Begin, RightBegin(tracks)); }
    Words& Samples(std::uint32_t track, std::int64_t position, const std::vector<float>& values,
                   std::uint32_t channels = 1) {
        return Add(lineup::decoding::MessageKind::Samples,
                   lineup::decoding::Samples{.track = track,
                                             .channels = channels,
                                             .count = static_cast<std::uint32_t>(values.size() / channels),
                                             .reserved = 0,
                                             .position = position},
                   values);
    }
    Words& End(lineup::decoding::EndCause cause = lineup::decoding::EndCause::Whole) {
        return Add(lineup::decoding::MessageKind::End, RightEnd(cause));
    }

    static lineup::decoding::Hello RightHello() {
        return {.version = lineup::decoding::kProtocolVersion, .givenUp = lineup::decoding::kEverything};
    }
    static lineup::decoding::Track RightTrack(std::uint32_t index, std::uint32_t channels = 1) {
        return {.index = index,
                .sampleRate = 48000,
                .channels = channels,
                .bits = 24,
                .flags = lineup::decoding::kLossless,
                .recordedRate = 48000,
                .codec = {'p', 'c', 'm'},
                .layout = {'m', 'o', 'n', 'o'}};
    }
    static lineup::decoding::Begin RightBegin(std::uint32_t tracks) {
        return {.tracks = tracks, .leftOut = 0, .seconds = 60, .container = {'w', 'a', 'v'}};
    }
    static lineup::decoding::End RightEnd(lineup::decoding::EndCause cause) {
        return {.cause = static_cast<std::uint32_t>(cause), .reserved = 0, .reason = {'w', 'h', 'y'}};
    }

    [[nodiscard]] const std::vector<std::byte>& Bytes() const noexcept { return mBytes; }

private:
    void Append(const void* from, std::size_t bytes) {
        const auto* const first = static_cast<const std::byte*>(from);
        mBytes.insert(mBytes.end(), first, first + bytes);
    }

    std::vector<std::byte> mBytes;
};

/// Hands out bytes, at most `most` at a time.
class MemoryInput : public lineup::ByteInput {
public:
    explicit MemoryInput(std::vector<std::byte> bytes, std::size_t most = 1U << 20)
        : mBytes(std::move(bytes)), mMost(most) {}

    std::size_t Read(std::span<std::byte> bytes) override {
        const std::size_t count = std::min({bytes.size(), mMost, mBytes.size() - mDone});
        std::ranges::copy(std::span(mBytes).subspan(mDone, count), bytes.begin());
        mDone += count;
        return count;
    }

private:
    std::vector<std::byte> mBytes;
    std::size_t mMost;
    std::size_t mDone = 0;
};

}  // namespace test
