#include "Apps/studio/Sound/SilentOutput.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace studio {

namespace {

constexpr int kPullsPerSecond = 100;

}  // namespace

SilentOutput::SilentOutput(std::shared_ptr<ClipPlayback> playback, QObject* parent)
    : SoundOutput(parent),
      mPlayback(std::move(playback)),
      mBuffer(static_cast<std::size_t>(mPlayback->SampleRateHz() / kPullsPerSecond * mPlayback->Outputs())),
      mThread([this](const std::stop_token& stop) { Run(stop); }) {}

SilentOutput::~SilentOutput() = default;

bool SilentOutput::End() {
    mThread = {};
    return true;
}

// Frames are counted from the start, so that a late wake-up is made up for.
void SilentOutput::Run(const std::stop_token& stop) {
    using Clock = ClipPlayback::Clock;
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    const auto start = Clock::now();
    const auto frames = static_cast<std::int64_t>(mBuffer.size()) / mPlayback->Outputs();
    const std::chrono::duration<double> period(static_cast<double>(frames) / mPlayback->SampleRateHz());
    for (std::int64_t pull = 1; !stop.stop_requested(); ++pull) {
        mPlayback->Render(mBuffer);
        const auto next = start + std::chrono::duration_cast<Clock::duration>(period * static_cast<double>(pull));
        wake.wait_until(lock, stop, next, [] { return false; });
    }
}

}  // namespace studio
