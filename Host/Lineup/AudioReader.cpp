#include "Host/Lineup/AudioReader.h"

#include "Host/Lineup/Error.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace lineup {

AudioReader::AudioReader(const Clip& clip)
    : mClip(&clip),
      mGrid(clip.SampleRate()),
      mLongestBlock(mGrid.LongestBlock()),
      mScratch(static_cast<std::size_t>(mLongestBlock * clip.RequestBuffers())),
      mTargets(static_cast<std::size_t>(clip.RequestBuffers())) {}

void AudioReader::Read(std::int64_t position, std::int64_t count, std::span<float* const> buffers) {
    if (position > std::numeric_limits<std::int64_t>::max() - count) {
        throw Error(
            fmt::format("cannot read {} samples from {} on: there are no positions so far out", count, position));
    }
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
        for (std::size_t c = 0; c < channels; ++c) {
            std::fill_n(mTargets[c], end - blockStart, 0.0F);
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
