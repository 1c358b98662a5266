#pragma once

#include "Apps/studio/Sound/SoundFeed.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace studio {

/// The sound of a recording, decoded ahead by a thread of its own. The playback's thread takes blocks out of a ring
/// that it shares with that thread, and neither waits for the other.
class RecordingFeed : public SoundFeed {
public:
    /// `length` in samples; behind what can be read it is silent up to there.
    RecordingFeed(std::string file, int inputs, double rateHz, std::int64_t length);
    ~RecordingFeed() override = default;

    [[nodiscard]] int NumChannels() const noexcept override { return mInputs; }
    [[nodiscard]] double SampleRate() const noexcept override { return mRateHz; }
    std::size_t Read(std::int64_t position, std::size_t frames, std::span<float* const> targets) override;

    /// The place in the plug-in's order of an input of a file with so many.
    [[nodiscard]] static std::size_t ChannelOf(std::size_t input, int inputs);

private:
    static constexpr std::size_t kBlocks = 64;
    static constexpr std::size_t kBlockFrames = 2048;
    struct Block {
        std::uint64_t answers = 0;  // the wish that it was decoded for
        std::size_t frames = 0;
        std::vector<std::vector<float>> inputs;
    };

    void Run(const std::stop_token& stop);
    void Decode(std::int64_t from, std::uint64_t wish, const std::stop_token& stop);
    [[nodiscard]] Block* NextFree(std::uint64_t wish, const std::stop_token& stop);
    [[nodiscard]] bool IsWanted(std::uint64_t wish, const std::stop_token& stop) const {
        return !stop.stop_requested() && mWish.load(std::memory_order_acquire) == wish;
    }

    std::string mFile;
    int mInputs;
    double mRateHz;
    std::int64_t mLength;
    std::array<Block, kBlocks> mBlocks;
    std::atomic<std::uint64_t> mFilled{0};  // blocks so far
    std::atomic<std::uint64_t> mTaken{0};
    std::atomic<std::int64_t> mFrom{0};
    std::atomic<std::uint64_t> mWish{0};  // counted; 0: there was none yet

    // The playback's own.
    std::int64_t mNext = -1;
    std::size_t mTakenOfBlock = 0;

    std::jthread mThread;
};

}  // namespace studio
