#include "Host/Lineup/Check/Reader/TrackQueue.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace lineup {

inline namespace parts {

namespace {

constexpr std::size_t kFirstRoom = 16384;  // samples a channel

// The bits of every number that is neither infinite nor not-a-number lie below these, but for its sign.
constexpr std::uint32_t kInfinity = 0x7f800000;

bool IsNumber(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return (bits & kInfinity) != kInfinity;
}

// Copies without branches, and counts NaN and infinity in a second round that is hardly ever needed.
std::int64_t CopyNumbers(std::span<const float> from, float* to) {
    bool allAreNumbers = true;
    for (std::size_t i = 0; i < from.size(); ++i) {
        to[i] = from[i];
        allAreNumbers &= IsNumber(from[i]);
    }
    if (allAreNumbers) {
        return 0;
    }
    std::int64_t count = 0;
    for (std::size_t i = 0; i < from.size(); ++i) {
        if (!IsNumber(to[i])) {
            to[i] = 0;
            ++count;
        }
    }
    return count;
}

}  // namespace

TrackQueue::TrackQueue(std::size_t channels) : mChannels(channels, std::vector<float>(kFirstRoom)) {}

std::size_t TrackQueue::Bytes() const noexcept {
    return mStored * mChannels.size() * sizeof(float) + mRuns.size() * sizeof(Run);
}

// For `count` more samples behind those that are stored. What was taken away leaves a gap in front that grows until it
// is worth moving the rest there.
void TrackQueue::MakeRoom(std::size_t count) {
    const std::size_t room = mChannels.front().size();
    if (mHead + mStored + count <= room) {
        return;
    }
    const std::size_t needed = mStored + count;
    for (std::vector<float>& channel : mChannels) {
        std::copy_n(channel.begin() + static_cast<std::ptrdiff_t>(mHead), mStored, channel.begin());
        if (needed > room / 2) {
            channel.resize(needed * 2);
        }
    }
    mHead = 0;
}

void TrackQueue::PadTo(std::int64_t position) {
    mEnd = std::max(mEnd, position);
}

std::int64_t TrackQueue::Add(std::int64_t position, std::span<const float> values) {
    PadTo(position);
    const std::size_t count = values.size() / mChannels.size();
    const auto late = static_cast<std::size_t>(std::min(mEnd - position, static_cast<std::int64_t>(count)));
    const std::size_t kept = count - late;
    if (kept == 0) {
        return static_cast<std::int64_t>(late);
    }
    MakeRoom(kept);
    for (std::size_t c = 0; c < mChannels.size(); ++c) {
        mNotNumbers += CopyNumbers(values.subspan(c * count + late, kept), &mChannels[c][mHead + mStored]);
    }
    if (mRuns.empty() || mRuns.back().position + static_cast<std::int64_t>(mRuns.back().count) != mEnd) {
        mRuns.push_back({.position = mEnd, .count = 0});
    }
    mRuns.back().count += kept;
    mStored += kept;
    mEnd += static_cast<std::int64_t>(kept);
    return static_cast<std::int64_t>(late);
}

void TrackQueue::TakeSilence(std::span<float* const> channels, std::size_t done, std::size_t count) {
    for (float* const channel : channels) {
        std::fill_n(channel + done, count, 0.0F);
    }
    mStart += static_cast<std::int64_t>(count);
}

void TrackQueue::TakeFromRun(std::span<float* const> channels, std::size_t done, std::size_t count) {
    for (std::size_t c = 0; c < mChannels.size(); ++c) {
        std::copy_n(&mChannels[c][mHead], count, channels[c] + done);
    }
    mStart += static_cast<std::int64_t>(count);
    mHead += count;
    mStored -= count;
    mRuns.front().position += static_cast<std::int64_t>(count);
    mRuns.front().count -= count;
    if (mRuns.front().count == 0) {
        mRuns.pop_front();
    }
}

void TrackQueue::Take(std::span<float* const> channels, std::size_t count) {
    for (std::size_t done = 0; done < count;) {
        const std::size_t left = count - done;
        const bool isSilence = mRuns.empty() || mRuns.front().position > mStart;
        if (isSilence) {
            const std::size_t silence =
                mRuns.empty() ? left : std::min(left, static_cast<std::size_t>(mRuns.front().position - mStart));
            TakeSilence(channels, done, silence);
            done += silence;
        } else {
            const std::size_t taken = std::min(left, mRuns.front().count);
            TakeFromRun(channels, done, taken);
            done += taken;
        }
    }
}

}  // namespace parts

}  // namespace lineup
