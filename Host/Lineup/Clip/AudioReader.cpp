#include <lineup/AudioReader.h>
#include <lineup/Error.h>
#include <lineup/Idents.h>

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace lineup {

namespace {

// The plug-in writes nothing for an ident that it does not know, nor to channels that an ident does not have.
bool LeavesChannelsUnwritten(const Clip& clip) {
    if (!clip.Settings()) {
        return false;
    }
    const Ident* const ident = FindIdent(*clip.Settings());
    return ident == nullptr ? AsksForUnknownIdent(*clip.Settings())
                            : ident->numChannels < static_cast<std::uint32_t>(clip.NumChannels());
}

}  // namespace

AudioReader::AudioReader(const Clip& clip)
    : mClip(&clip),
      mGrid(clip.SampleRate()),
      mLongestBlock(mGrid.LongestBlock()),
      mScratch(static_cast<std::size_t>(mLongestBlock * clip.RequestBuffers())),
      mTargets(static_cast<std::size_t>(clip.RequestBuffers())),
      mSilenceFirst(LeavesChannelsUnwritten(clip)) {}

std::int64_t AudioReader::BlockEnd(std::int64_t position) const noexcept {
    return mGrid.NextBlockStart(position);
}

void AudioReader::Read(std::int64_t position, std::int64_t count, std::span<float* const> buffers) {
    if (position > std::numeric_limits<std::int64_t>::max() - count) {
        throw Error(
            fmt::format("cannot read {} samples from {} on: there are no positions so far out", count, position));
    }
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
    for (std::size_t c = 0; mSilenceFirst && c < static_cast<std::size_t>(mClip->NumChannels()); ++c) {
        std::fill_n(mTargets[c], count, 0.0F);
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
