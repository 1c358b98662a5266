#pragma once

#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <span>
#include <string_view>
#include <vector>

namespace lineup::decoding {

/// The field that holds `text`, cut to what fits.
template <std::size_t kSize>
[[nodiscard]] TextField<kSize> ToField(std::string_view text) {
    TextField<kSize> field{};
    text.copy(field.data(), kSize - 1);
    return field;
}

/// Puts messages together and writes them to a descriptor, many at a time.
class MessageWriter {
public:
    explicit MessageWriter(int descriptor);

    void Write(const Hello& body) { Put(MessageKind::Hello, body); }
    void Write(const Track& body) { Put(MessageKind::Track, body); }
    void Write(const Begin& body) { Put(MessageKind::Begin, body); }
    void Write(const Damage& body) { Put(MessageKind::Damage, body); }
    void Write(const Reading& body) { Put(MessageKind::Reading, body); }
    void Write(const End& body) { Put(MessageKind::End, body); }
    void Write(const Picture& body) { Put(MessageKind::Picture, body); }
    void Write(const Frame& body) { Put(MessageKind::Frame, body); }
    void Write(const Arrival& body) { Put(MessageKind::Arrival, body); }
    void Write(const PictureEnd& body) { Put(MessageKind::PictureEnd, body); }

    /// Makes room for a message of samples and returns where they go, head.count * head.channels of them.
    [[nodiscard]] std::span<float> WriteSamples(const Samples& head);

    /// Makes room for a message of lines and returns where their `codes` codes go, at most MostCodes().
    [[nodiscard]] std::span<std::uint16_t> WriteLines(const Lines& head, std::size_t codes);

    [[nodiscard]] static constexpr std::size_t MostCodes() { return kMostValues * 2; }

    /// Hands over what has been put together. Throws std::system_error when nobody listens any more.
    void Flush();

private:
    template <class Body>
    void Put(MessageKind kind, const Body& body) {
        PutBytes(kind, std::as_bytes(std::span(&body, 1)), 0);
    }
    std::span<std::byte> PutBytes(MessageKind kind, std::span<const std::byte> body, std::size_t more);

    int mDescriptor;
    std::size_t mFilled = 0;
    std::vector<std::byte> mBytes;
};

}  // namespace lineup::decoding
