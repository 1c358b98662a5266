#pragma once

#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include "Bridges/MLT/ClipChoice.h"

#include <cstdint>
#include <memory>

namespace bridge {

/// The sound of a chosen clip at one sample rate, in the channel order of files and devices. Not thread safe.
class Sound {
public:
    /// The rate that the clip is made at when sound is asked for at `rateHz`: the same, or the nearest that a
    /// clip can have.
    [[nodiscard]] static int NearestRate(int rateHz);

    /// `rateHz` is a NearestRate. Throws lineup::Error when the clip cannot be opened.
    Sound(const std::shared_ptr<const lineup::Importer>& importer, const ClipChoice& choice, int rateHz,
          const Complain& complain);
    ~Sound() = default;
    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;
    Sound(Sound&&) = delete;
    Sound& operator=(Sound&&) = delete;

    [[nodiscard]] int RateHz() const noexcept { return mRateHz; }

    /// How many channels come back when `asked` are asked for: the clip's own, but for mono, which goes to
    /// both sides of a stereo consumer at full level.
    [[nodiscard]] int ChannelsFor(int asked) const noexcept;

    /// Fills `channels` planes of `count` samples each, one behind the other, from sample `start` on.
    /// `channels` is what ChannelsFor gave.
    void Read(std::int64_t start, std::int64_t count, int channels, float* planes);

private:
    int mRateHz;
    lineup::Clip mClip;
    lineup::AudioReader mReader;
    const lineup::ChannelLayout* mLayout;
};

}  // namespace bridge
