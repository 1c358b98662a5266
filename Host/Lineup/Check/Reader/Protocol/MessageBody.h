#pragma once

#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"

#include <fmt/format.h>

#include <cstddef>
#include <cstring>
#include <span>

namespace lineup {

/// Throws DecoderTalksNonsense unless `isRight`.
inline void RequireSense(bool isRight, const char* what) {
    if (!isRight) {
        throw DecoderTalksNonsense(fmt::format("the decoder talks nonsense: {}", what));
    }
}

/// The fixed part that a message's body begins with.
template <class Body>
[[nodiscard]] Body HeadOfBody(std::span<const std::byte> body) {
    Body head{};
    RequireSense(body.size() >= sizeof head, "a message is too short");
    std::memcpy(&head, body.data(), sizeof head);
    return head;
}

/// The body of a message that has nothing but a fixed part.
template <class Body>
[[nodiscard]] Body WholeBody(std::span<const std::byte> body) {
    RequireSense(body.size() == sizeof(Body), "a message has another size than its kind");
    return HeadOfBody<Body>(body);
}

}  // namespace lineup
