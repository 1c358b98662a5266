#pragma once

#include <lineup/AudioReader.h>
#include <lineup/Clip.h>
#include "Host/Lineup/Send/SendEntry.h"
#include "Host/Lineup/Send/Transport/SoundLane.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lineup {
inline namespace parts {

/// The clip's sound in a codec's frames, for ever. An encoder takes up each stretch of frames anew, some frames ahead
/// of it so that it is in its stride: a frame is the same whoever asks for it and when. Where the frames of a whole
/// cycle fit into memory they are kept, and nothing is coded twice.
class LINEUP_API CodedSound final : public SoundFrames {
public:
    using OpenCoder = std::function<std::unique_ptr<SoundCoder>()>;

    /// `stretch`: frames that one encoder makes; `warmUp`: those that it makes first and that are thrown away.
    struct Stretches {
        std::int64_t frames = 256;
        std::int64_t warmUp = 16;
    };

    /// What is kept at most, in bytes, by the usual size of a frame.
    static constexpr std::int64_t kMostKept = std::int64_t{96} << 20U;

    /// `usualBytes`: of a frame, as many as there are on average.
    CodedSound(const Clip& clip, OpenCoder open, std::size_t usualBytes, Stretches stretches);

    [[nodiscard]] int BlockSamples() const { return mBlock; }
    [[nodiscard]] int PaddingSamples() const { return mPadding; }

    /// Whether every frame is coded once and kept.
    [[nodiscard]] bool Keeps() const noexcept { return !mPlaces.empty(); }

    [[nodiscard]] std::span<const std::uint8_t> Frame(std::int64_t index) override;

private:
    struct Place {
        std::size_t first = 0;
        std::size_t size = 0;
    };

    void Keep(std::int64_t frame);
    void Begin(std::int64_t stretch);
    void CodeNext();
    void ReadBlock(std::int64_t block);

    AudioReader mReader;
    OpenCoder mOpen;
    Stretches mStretches;
    std::int64_t mCycle;  // samples
    std::unique_ptr<SoundCoder> mCoder;
    int mBlock;
    int mPadding;
    std::int64_t mFrames;               // of the cycle
    std::vector<Place> mPlaces;         // of frames in what is kept; empty: too many
    std::vector<std::uint8_t> mKept;    // one block, which encoders that come and go do not fragment
    std::vector<std::uint8_t> mPacket;  // the last that was coded
    std::int64_t mStretch = -1;         // with which frame the encoder's begins
    std::int64_t mNextFrame = 0;        // that the encoder gives
    std::int64_t mNextBlock = 0;        // that it takes
    std::vector<float> mSamples;
    std::vector<float*> mChannels;
};

}  // namespace parts
}  // namespace lineup
