#pragma once

#include "Host/Lineup/Check/Reader/Protocol/Messages.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lineup {

inline namespace parts {

/// A decoded frame: its codes as the file has them, plane after plane, line after line without gaps.
struct DecodedPicture {
    decoding::Frame head{};
    std::array<std::vector<std::uint16_t>, 3> planes;
};

/// Whoever looks at the pictures of a recording as they come.
class PictureListener {
public:
    PictureListener() = default;
    virtual ~PictureListener() = default;
    PictureListener(const PictureListener&) = delete;
    PictureListener& operator=(const PictureListener&) = delete;

    /// Before all others.
    virtual void OnFacts(const decoding::Picture& facts) = 0;

    /// The picture holds until this returns. One that cannot be read has no codes. False when no more are wanted.
    virtual bool OnPicture(const DecodedPicture& picture) = 0;

    /// After the last, where the recording was read to its end.
    virtual void OnEnd(const decoding::PictureEnd& end) = 0;
};

}  // namespace parts

}  // namespace lineup
