#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace bridge {

/// Where in the clip the sound of a frame starts, so that frames which follow each other join without a gap.
///
/// At 30000/1001 frames a second frames are 1601 or 1602 samples long, and which of them is which depends on
/// where the clip lies on the timeline of whoever asks. A frame that follows one of the last few starts where
/// that one ended; any other starts exactly where the frame itself does. Not thread safe.
class SoundTimeline {
public:
    /// The first sample of frame `position`, which is to be `count` samples long at `rateHz`. `exactStart` is
    /// the sample at which the frame starts by the clock. A frame that is asked for again starts where it
    /// did. Where a follower would be more than half its length off the clock, the clock wins.
    std::int64_t Start(std::int64_t position, std::int64_t exactStart, std::int64_t count, int rateHz);

    /// Forgets all frames: the length of a frame has changed.
    void Reset();

private:
    struct Stretch {
        std::int64_t position = 0;
        std::int64_t start = 0;
        std::int64_t end = 0;
        int rateHz = 0;  // 0: holds nothing yet
    };

    [[nodiscard]] const Stretch* FindNeighbour(std::int64_t position, int rateHz) const;

    // Several places of one timeline may show the same clip, and take turns: each is followed.
    static constexpr std::size_t kRemembered = 8;

    std::array<Stretch, kRemembered> mStretches;
    std::size_t mNewest = 0;
};

}  // namespace bridge
