#pragma once

#include <lineup/Rational.h>
#include <lineup/Timecode.h>

#include <cstdint>
#include <optional>
#include <span>

namespace lineup {

/// The time code that MPEG-2 pictures carry in the head of their group of pictures.
class GopTimecode {
public:
    /// `first` is that of frame 0; without one, frames count from 00:00:00:00.
    GopTimecode(const std::optional<Timecode>& first, Rational frameRate);

    /// Writes the time code of frame `index` into an encoded picture, where it stands already for another one.
    /// Throws Error when there is no head of a group.
    void Set(std::span<std::uint8_t> picture, std::int64_t index) const;

private:
    int mFramesPerSecond;
    bool mDropFrame = false;
    std::int64_t mFirst = 0;
};

}  // namespace lineup
