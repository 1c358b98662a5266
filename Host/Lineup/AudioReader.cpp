#include "Host/Lineup/AudioReader.h"

#include <algorithm>
#include <cmath>

namespace lineup {

namespace {

std::int64_t LongestBlock(const Clip& clip) {
    return std::llround(std::ceil(clip.SampleRate() / 10.0F)) + 1;
}

}  // namespace

AudioReader::AudioReader(const Clip& clip)
    : mClip(&clip),
      mGrid(clip.SampleRate()),
      mLongestBlock(LongestBlock(clip)),
      mScratch(static_cast<std::size_t>(mLongestBlock * clip.RequestBuffers())),
      mTargets(static_cast<std::size_t>(clip.RequestBuffers())) {}

void AudioReader::Read(std::int64_t position, std::int64_t count, std::span<float* const> buffers) {
    const auto channels = static_cast<std::size_t>(mClip->NumChannels());
    for (std::int64_t done = 0; done < count;) {
        const std::int64_t at = position + done;
        const std::int64_t blockStart = mGrid.BlockStart(at);
        const std::int64_t end = std::min(mGrid.NextBlockStart(at), position + count);

        // A block that is wanted from its start goes straight to the caller; what the plug-in writes
        // beyond the clip's channels, and the head of a block that is entered late, go to the scratch.
        for (std::size_t c = 0; c < mTargets.size(); ++c) {
            const bool direct = at == blockStart && c < channels;
            mTargets[c] = direct ? buffers[c] + done : mScratch.data() + static_cast<std::int64_t>(c) * mLongestBlock;
        }
        mClip->Plugin().ReadAudio(mClip->ForRequest(), blockStart, static_cast<std::uint32_t>(end - blockStart),
                                  mTargets.data());
        if (at != blockStart) {
            for (std::size_t c = 0; c < channels; ++c) {
                std::copy_n(mTargets[c] + (at - blockStart), end - at, buffers[c] + done);
            }
        }
        done += end - at;
    }
}

}  // namespace lineup
