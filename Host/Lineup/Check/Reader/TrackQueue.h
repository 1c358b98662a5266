#pragma once

#include <lineup/Api.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace lineup {

inline namespace parts {

/// The samples of one track that wait to be read, all channels alike. Gaps are silence, and take no memory however long
/// they are. What is taken away makes room, so memory is that of the most that ever waited.
class LINEUP_API TrackQueue {
public:
    explicit TrackQueue(std::size_t channels);

    /// Adds values[c * count + i], sample i of channel c, at `position`: what lies between the queue's end and there is
    /// silence, and samples that should have come before the queue's end are dropped. Returns how many were.
    /// Not-a-number and infinite become 0.
    std::int64_t Add(std::int64_t position, std::span<const float> values);

    /// Adds silence until the queue ends at `position`. Nothing when it ends later.
    void PadTo(std::int64_t position);

    /// Copies the first `count` samples of channel c to channels[c] and takes them away; count is at most Waiting().
    void Take(std::span<float* const> channels, std::size_t count);

    [[nodiscard]] std::size_t Channels() const noexcept { return mChannels.size(); }

    /// Samples of each channel that wait, silence included.
    [[nodiscard]] std::size_t Waiting() const noexcept { return static_cast<std::size_t>(mEnd - mStart); }

    /// What those that are not silence take.
    [[nodiscard]] std::size_t Bytes() const noexcept;

    /// Where the samples that wait end, from the start of the recording.
    [[nodiscard]] std::int64_t End() const noexcept { return mEnd; }

    /// Samples, counted over all channels, that were no numbers.
    [[nodiscard]] std::int64_t NotNumbers() const noexcept { return mNotNumbers; }

private:
    // Samples that lie one behind the other in the recording and in memory.
    struct Run {
        std::int64_t position;
        std::size_t count;
    };

    void MakeRoom(std::size_t count);
    void TakeSilence(std::span<float* const> channels, std::size_t done, std::size_t count);
    void TakeFromRun(std::span<float* const> channels, std::size_t done, std::size_t count);

    std::vector<std::vector<float>> mChannels;
    std::size_t mHead = 0;    // in each of them, where the first sample of the first run lies
    std::size_t mStored = 0;  // behind it
    std::deque<Run> mRuns;
    std::int64_t mStart = 0;
    std::int64_t mEnd = 0;
    std::int64_t mNotNumbers = 0;
};

}  // namespace parts

}  // namespace lineup
