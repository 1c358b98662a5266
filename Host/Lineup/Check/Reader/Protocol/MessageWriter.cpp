#include "Host/Lineup/Check/Reader/Protocol/MessageWriter.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <unistd.h>

namespace lineup::decoding {

namespace {

// A few times what one call can put into the pipe: system calls cost nothing, and the listener never waits long.
constexpr std::size_t kHandOverBytes = std::size_t{1} << 18;
constexpr std::size_t kLargestMessage = kMostValues * sizeof(float) + 256;

}  // namespace

MessageWriter::MessageWriter(int descriptor) : mDescriptor(descriptor), mBytes(kHandOverBytes + kLargestMessage) {}

std::span<float> MessageWriter::WriteSamples(const Samples& head) {
    const std::size_t values = std::size_t{head.count} * head.channels;
    const auto room = PutBytes(MessageKind::Samples, std::as_bytes(std::span(&head, 1)),
                               std::min(values, kMostValues) * sizeof(float));
    // Every message is a whole number of floats long, so this one's samples lie where floats may.
    return {reinterpret_cast<float*>(room.data()), room.size() / sizeof(float)};
}

std::span<std::uint16_t> MessageWriter::WriteLines(const Lines& head, std::size_t codes) {
    const std::size_t padded = (std::min(codes, MostCodes()) + 1) / 2 * 2;
    const auto room = PutBytes(MessageKind::Lines, std::as_bytes(std::span(&head, 1)), padded * sizeof(std::uint16_t));
    const std::span<std::uint16_t> all(reinterpret_cast<std::uint16_t*>(room.data()), padded);
    all.back() = 0;
    return all.first(std::min(codes, MostCodes()));
}

std::span<std::byte> MessageWriter::PutBytes(MessageKind kind, std::span<const std::byte> body, std::size_t more) {
    if (mFilled >= kHandOverBytes) {
        Flush();
    }
    const MessageHeader header{.kind = static_cast<std::uint32_t>(kind),
                               .bytes = static_cast<std::uint32_t>(body.size() + more)};
    std::memcpy(&mBytes[mFilled], &header, sizeof header);
    mFilled += sizeof header;
    std::memcpy(&mBytes[mFilled], body.data(), body.size());
    mFilled += body.size();
    const std::span room(mBytes.data() + mFilled, more);
    mFilled += more;
    return room;
}

void MessageWriter::Flush() {
    std::span<const std::byte> left(mBytes.data(), mFilled);
    while (!left.empty()) {
        const ssize_t written = write(mDescriptor, left.data(), left.size());
        if (written < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "cannot hand over what was decoded");
        }
        left = left.subspan(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    mFilled = 0;
}

}  // namespace lineup::decoding
