#pragma once

#include <lineup/AudioReader.h>
#include <lineup/Clip.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

namespace studio {

/// Where a playback has its samples from. The audio thread calls Read and nothing else.
class SoundFeed {
public:
    SoundFeed() = default;
    virtual ~SoundFeed() = default;
    SoundFeed(const SoundFeed&) = delete;
    SoundFeed& operator=(const SoundFeed&) = delete;

    /// Of channels in the plug-in's order.
    [[nodiscard]] virtual int NumChannels() const noexcept = 0;
    [[nodiscard]] virtual double SampleRate() const noexcept = 0;

    /// Fills targets[c][i] for i < `frames` with the samples from `position` on, and says how many are there: at once,
    /// 0 where they are still to come. Takes no lock and allocates nothing. Throws where there are none.
    virtual std::size_t Read(std::int64_t position, std::size_t frames, std::span<float* const> targets) = 0;
};

/// The sound of a clip, straight from the plug-in.
class ClipFeed : public SoundFeed {
public:
    explicit ClipFeed(std::shared_ptr<const lineup::Clip> clip) : mClip(std::move(clip)), mReader(*mClip) {}

    [[nodiscard]] int NumChannels() const noexcept override { return mClip->NumChannels(); }
    [[nodiscard]] double SampleRate() const noexcept override { return mClip->SampleRate(); }
    std::size_t Read(std::int64_t position, std::size_t frames, std::span<float* const> targets) override {
        mReader.Read(position, static_cast<std::int64_t>(frames), targets);
        return frames;
    }

private:
    std::shared_ptr<const lineup::Clip> mClip;
    lineup::AudioReader mReader;
};

}  // namespace studio
