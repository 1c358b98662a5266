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

std::int64_t AudioReader::BlockEnd(std::int64_t position) const noexcept {
    return mGrid.NextBlockStart(position);
}

void AudioReader::Read(std::int64_t position, std::int64_t count, std::span<float* const> buffers) {
    for (std::int64_t done = 0; done < count;) {
        const std::int64_t at = position + done;
        const std::int64_t blockStart = mGrid.BlockStart(at);
        const std::int64_t blockEnd = mGrid.NextBlockStart(at);
        const std::int64_t end = std::min(blockEnd, position + count);
        if (at == blockStart && end == blockEnd) {
            Request(blockStart, end - blockStart, buffers, done);
        } else {
            CopyFromBlock(blockStart, at - blockStart, end - blockStart, buffers, done);
        }
        done += end - at;
    }
}

// Channels that the caller has no buffer for go to the scratch, those of the clip and what the plug-in writes
// beyond them.
void AudioReader::Request(std::int64_t blockStart, std::int64_t count, std::span<float* const> buffers,
                          std::int64_t offset) {
    const auto channels = std::min(buffers.size(), static_cast<std::size_t>(mClip->NumChannels()));
    if (channels < mTargets.size()) {
        mKeptStart.reset();  // at least in part
    }
    for (std::size_t c = 0; c < mTargets.size(); ++c) {
        mTargets[c] =
            c < channels ? buffers[c] + offset : mScratch.data() + static_cast<std::int64_t>(c) * mLongestBlock;
    }
    mClip->Plugin().ReadAudio(mClip->ForRequest(), blockStart, static_cast<std::uint32_t>(count), mTargets.data());
}

// The block is made whole and kept: reading on in it costs no more than the copy.
void AudioReader::CopyFromBlock(std::int64_t blockStart, std::int64_t first, std::int64_t last,
                                std::span<float* const> buffers, std::int64_t offset) {
    if (mKeptStart != blockStart) {
        mKeptStart.reset();
        Request(blockStart, mGrid.NextBlockStart(blockStart) - blockStart, {}, 0);
        mKeptStart = blockStart;
    }
    for (std::size_t c = 0; c < static_cast<std::size_t>(mClip->NumChannels()); ++c) {
        const float* const kept = mScratch.data() + static_cast<std::int64_t>(c) * mLongestBlock;
        std::copy(kept + first, kept + last, buffers[c] + offset);
    }
}

}  // namespace lineup
