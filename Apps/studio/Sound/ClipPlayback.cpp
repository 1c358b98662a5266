#include "Apps/studio/Sound/ClipPlayback.h"

#include <algorithm>
#include <exception>

namespace studio {

namespace {

constexpr std::size_t kChunkFrames = 2048;  // what is read at once
constexpr std::int64_t kNoSeek = -1;
constexpr std::int64_t kNsPerSecond = 1'000'000'000;
constexpr std::int64_t kStallNs = 3 * kNsPerSecond;  // a device asks several times a second, on a busy machine less

std::int64_t Nanoseconds(ClipPlayback::Clock::time_point time) {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count();
}

}  // namespace

ClipPlayback::ClipPlayback(std::shared_ptr<const lineup::Clip> clip, SpeakerMap speakers, std::int64_t lengthSamples,
                           std::int64_t start)
    : ClipPlayback(std::make_unique<ClipFeed>(std::move(clip)), std::move(speakers), lengthSamples, start) {}

ClipPlayback::ClipPlayback(std::unique_ptr<SoundFeed> feed, SpeakerMap speakers, std::int64_t lengthSamples,
                           std::int64_t start)
    : mFeed(std::move(feed)),
      mSpeakers(std::move(speakers)),
      mLength(lengthSamples),
      mPlanes(static_cast<std::size_t>(mFeed->NumChannels()), std::vector<float>(kChunkFrames)),
      mPosition(std::clamp<std::int64_t>(start, 0, lengthSamples)),
      mPeaks(mPlanes.size()) {
    for (auto& plane : mPlanes) {
        mTargets.push_back(plane.data());
        mSources.push_back(plane.data());
    }
    BeginStretch(mPosition);
    mProgress.timeNs = Nanoseconds(Clock::now());
    mPublished.Write(mProgress);
}

void ClipPlayback::BeginStretch(std::int64_t position, bool waits) noexcept {
    mPosition = position;
    mWaits = waits;
    mProgress.stretches[mProgress.stretchCount % kStretches] = {mProgress.rendered, position, waits ? 1 : 0};
    ++mProgress.stretchCount;
}

// An exception must not pass into the sound library, whose thread this is.
std::size_t ClipPlayback::ReadSound(std::size_t frames) noexcept {
    try {
        return mFeed->Read(mPosition, frames, mTargets);
    } catch (const std::exception&) {
        mFailed.store(true);
        for (auto& plane : mPlanes) {
            std::ranges::fill(plane, 0.0F);
        }
        return frames;
    }
}

// How many of `frames` it has written, silence while it waits.
std::size_t ClipPlayback::RenderSound(std::size_t frames, float* target) noexcept {
    const std::size_t there = ReadSound(frames);
    if (mWaits != (there == 0)) {
        BeginStretch(mPosition, there == 0);
    }
    if (there == 0) {
        std::fill_n(target, frames * static_cast<std::size_t>(mSpeakers.Outputs()), 0.0F);
        return frames;
    }
    for (std::size_t channel = 0; channel < mPlanes.size(); ++channel) {
        mPeaks.Add(channel, std::span(mPlanes[channel]).first(there));
    }
    mSpeakers.Mix(mSources, there, target);
    mPosition += static_cast<std::int64_t>(there);
    return there;
}

void ClipPlayback::Render(std::span<float> interleaved) noexcept {
    const auto outputs = static_cast<std::size_t>(mSpeakers.Outputs());
    const std::int64_t seek = mSeek.exchange(kNoSeek);
    if (seek != kNoSeek) {
        BeginStretch(std::clamp<std::int64_t>(seek, 0, mLength));
    }
    for (std::size_t done = 0; done < interleaved.size() / outputs;) {
        if (mPosition >= mLength && mLoop.load(std::memory_order_relaxed)) {
            BeginStretch(0);
        }
        std::size_t frames = std::min(interleaved.size() / outputs - done, kChunkFrames);
        float* const target = interleaved.data() + done * outputs;
        if (mPosition < mLength) {
            frames = RenderSound(std::min(frames, static_cast<std::size_t>(mLength - mPosition)), target);
        } else {
            std::fill_n(target, frames * outputs, 0.0F);
        }
        mProgress.rendered += static_cast<std::int64_t>(frames);
        done += frames;
    }
    mVolume.Apply(interleaved, outputs);
    mProgress.timeNs = Nanoseconds(Clock::now());
    mPublished.Write(mProgress);
}

// Right after Render the device's buffer is full; from then on it plays at the clock's pace.
std::int64_t ClipPlayback::Heard(const Progress& progress, Clock::time_point now) const noexcept {
    const std::int64_t sinceNs = std::clamp<std::int64_t>(Nanoseconds(now) - progress.timeNs, 0, kNsPerSecond);
    const std::int64_t since = sinceNs * SampleRateHz() / kNsPerSecond;
    return std::clamp<std::int64_t>(progress.rendered - mLatency.load() + since, 0, progress.rendered);
}

std::int64_t ClipPlayback::Playhead(Clock::time_point now) const noexcept {
    const Progress progress = mPublished.Read();
    const std::int64_t heard = Heard(progress, now);
    const std::uint64_t kept = std::min<std::uint64_t>(progress.stretchCount, kStretches);
    Stretch stretch;
    for (std::uint64_t back = 1; back <= kept; ++back) {
        stretch = progress.stretches[(progress.stretchCount - back) % kStretches];
        if (stretch.rendered <= heard) {
            break;
        }
    }
    const std::int64_t since = stretch.waits != 0 ? 0 : heard - stretch.rendered;
    return std::clamp<std::int64_t>(stretch.position + since, 0, mLength);
}

bool ClipPlayback::IsStalled(Clock::time_point now) const noexcept {
    return Nanoseconds(now) - mPublished.Read().timeNs > kStallNs;
}

bool ClipPlayback::Ended(Clock::time_point now) const noexcept {
    return !mLoop.load() && mSeek.load() == kNoSeek && Playhead(now) >= mLength;
}

}  // namespace studio
