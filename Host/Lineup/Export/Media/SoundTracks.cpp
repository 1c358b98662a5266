#include "Host/Lineup/Export/Media/SoundTracks.h"

#include "Host/Lineup/Export/Samples/Dither.h"

#include <algorithm>

namespace lineup {

namespace {

// Encoders that take any number of samples get no more than this at a time.
constexpr int kMostSamples = 8192;

}  // namespace

SoundTracks::SoundTracks(const Clip& clip, const SoundPlan& plan, Muxer& muxer)
    : mReader(clip),
      mStart(plan.startSample),
      mTotal(plan.samples),
      mSounding(plan.samples - plan.silentSamples),
      mDither(plan.dither) {
    for (const TrackPlan& track : plan.tracks) {
        mTracks.emplace_back(plan, track, muxer);
    }
    mBlockSamples = mTracks.front().BlockSamples();

    const auto channels = static_cast<std::size_t>(clip.NumChannels());
    const auto samples = static_cast<std::size_t>(std::max(mBlockSamples, kMostSamples));
    mSamples.resize(channels * samples);
    for (std::size_t c = 0; c < channels; ++c) {
        mChannels.push_back(mSamples.data() + c * samples);
    }
}

void SoundTracks::WriteUpTo(std::int64_t end) {
    end = std::min(end, mTotal);
    while (mPosition < end) {
        // An encoder with blocks of its own gets whole ones, which may reach past `end`.
        const std::int64_t wanted = mBlockSamples > 0 ? std::min<std::int64_t>(mBlockSamples, mTotal - mPosition)
                                                      : std::min<std::int64_t>(kMostSamples, end - mPosition);
        WriteBlock(static_cast<int>(wanted));
    }
}

void SoundTracks::WriteBlock(int count) {
    const std::int64_t sounding = std::clamp<std::int64_t>(mSounding - mPosition, 0, count);
    mReader.Read(mStart + mPosition, sounding, mChannels);
    for (std::size_t c = 0; c < mChannels.size(); ++c) {
        if (mDither == Dither::Triangular) {
            AddDither({mChannels[c], static_cast<std::size_t>(sounding)}, mStart + mPosition, static_cast<int>(c));
        }
        std::fill(mChannels[c] + sounding, mChannels[c] + count, 0.0F);
    }
    for (SoundEncoder& track : mTracks) {
        track.Write(mChannels, mPosition, count);
    }
    mPosition += count;
}

void SoundTracks::Finish() {
    for (SoundEncoder& track : mTracks) {
        track.Finish();
    }
}

}  // namespace lineup
