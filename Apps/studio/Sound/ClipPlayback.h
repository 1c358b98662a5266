#pragma once

#include <lineup/Clip.h>
#include "Apps/studio/Sound/PeakBank.h"
#include "Apps/studio/Sound/SnapshotCell.h"
#include "Apps/studio/Sound/SoundFeed.h"
#include "Apps/studio/Sound/SpeakerMap.h"
#include "Apps/studio/Sound/Volume.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace studio {

/// One playback of a clip, or of a recording: what the audio thread pulls, and what the window steers and sees. The
/// audio thread calls Render and nothing else; Render takes no lock and allocates nothing. All other methods are for
/// any thread. The clip plays from sample 0 up to its length, and with Loop on from 0 again.
class ClipPlayback {
public:
    using Clock = std::chrono::steady_clock;

    /// `lengthSamples` is 1 or more, `start` in [0, lengthSamples]. Where the feed has no samples yet, it is silent and
    /// the playhead waits for them.
    ClipPlayback(std::unique_ptr<SoundFeed> feed, SpeakerMap speakers, std::int64_t lengthSamples, std::int64_t start);
    ClipPlayback(std::shared_ptr<const lineup::Clip> clip, SpeakerMap speakers, std::int64_t lengthSamples,
                 std::int64_t start);

    [[nodiscard]] int Outputs() const noexcept { return mSpeakers.Outputs(); }
    [[nodiscard]] int SampleRateHz() const noexcept { return static_cast<int>(mFeed->SampleRate()); }

    /// Fills `interleaved`, whole frames of Outputs() samples; silence after the clip's end. Audio thread.
    void Render(std::span<float> interleaved) noexcept;

    /// Says how many frames lie between Render and the loudspeaker. Set before playing.
    void SetLatency(std::int64_t frames) noexcept { mLatency.store(frames); }

    /// How loud it is heard. Peaks are those of the clip, whatever the volume.
    [[nodiscard]] Volume& Loudness() noexcept { return mVolume; }

    void Seek(std::int64_t sample) noexcept { mSeek.store(sample); }
    void SetLoop(bool loop) noexcept { mLoop.store(loop); }

    /// The clip sample that is heard at `now`, in [0, length].
    [[nodiscard]] std::int64_t Playhead(Clock::time_point now = Clock::now()) const noexcept;

    /// The end of the clip has been heard.
    [[nodiscard]] bool Ended(Clock::time_point now = Clock::now()) const noexcept;

    /// Nobody has asked for sound for so long that the playhead stands still: the device is gone.
    [[nodiscard]] bool IsStalled(Clock::time_point now = Clock::now()) const noexcept;

    /// The plug-in refused a request; what is heard is silence.
    [[nodiscard]] bool Failed() const noexcept { return mFailed.load(); }

    /// Peaks of the clip's channels, in the plug-in's order.
    [[nodiscard]] PeakBank& Peaks() noexcept { return mPeaks; }

private:
    // From frame `rendered` of the playback on, clip sample `position` and what follows it is heard.
    struct Stretch {
        std::int64_t rendered = 0;
        std::int64_t position = 0;
        std::int64_t waits = 0;  // 1: for samples, with the playhead
    };
    // Enough to look back over as many seeks and loops as fit into a device's buffer.
    static constexpr std::size_t kStretches = 8;
    struct Progress {
        std::int64_t rendered = 0;  // frames, since the playback began
        std::int64_t timeNs = 0;    // when they were
        std::uint64_t stretchCount = 0;
        std::array<Stretch, kStretches> stretches{};  // the latest ones, at their count modulo kStretches
    };

    void BeginStretch(std::int64_t position, bool waits = false) noexcept;
    [[nodiscard]] std::size_t ReadSound(std::size_t frames) noexcept;
    [[nodiscard]] std::size_t RenderSound(std::size_t frames, float* target) noexcept;
    [[nodiscard]] std::int64_t Heard(const Progress& progress, Clock::time_point now) const noexcept;

    std::unique_ptr<SoundFeed> mFeed;
    SpeakerMap mSpeakers;
    std::int64_t mLength;
    std::vector<std::vector<float>> mPlanes;
    std::vector<float*> mTargets;
    std::vector<const float*> mSources;

    // The audio thread's own.
    std::int64_t mPosition;
    bool mWaits = false;
    Progress mProgress;

    SnapshotCell<Progress> mPublished;
    std::atomic<std::int64_t> mSeek{-1};
    std::atomic<std::int64_t> mLatency{0};
    std::atomic<bool> mLoop{false};
    std::atomic<bool> mFailed{false};
    PeakBank mPeaks;
    Volume mVolume;
};

}  // namespace studio
