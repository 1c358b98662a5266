#include <lineup/AudioReader.h>
#include <lineup/Error.h>
#include <lineup/Idents.h>
#include "Host/Lineup/Clip/BlockGrid.h"
#include "Host/Lineup/Values/RethrowAsError.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

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

/// The clip's sound in the blocks of the grid.
class AudioReader::Blocks {
public:
    explicit Blocks(const Clip& clip)
        : mClip(&clip),
          mGrid(clip.SampleRate()),
          mLongestBlock(mGrid.LongestBlock()),
          mScratch(static_cast<std::size_t>(mLongestBlock * clip.RequestBuffers())),
          mTargets(static_cast<std::size_t>(clip.RequestBuffers())),
          mSilenceFirst(LeavesChannelsUnwritten(clip)) {}

    [[nodiscard]] const BlockGrid& Grid() const noexcept { return mGrid; }

    void Require(std::int64_t position, std::int64_t count, std::span<float* const> buffers) const;

    /// Reads `count` samples of a block from `position` on into buffers[c] + offset.
    void Read(const BlockGrid::Block& block, std::int64_t position, std::int64_t count, std::span<float* const> buffers,
              std::int64_t offset);

private:
    [[nodiscard]] std::size_t NumChannels() const noexcept { return static_cast<std::size_t>(mClip->NumChannels()); }
    [[nodiscard]] float* Scratch(std::size_t channel) noexcept {
        return mScratch.data() + static_cast<std::int64_t>(channel) * mLongestBlock;
    }
    void Request(std::int64_t blockStart, std::int64_t count, std::span<float* const> buffers, std::int64_t offset);

    const Clip* mClip;
    BlockGrid mGrid;
    std::int64_t mLongestBlock;
    std::vector<float> mScratch;
    std::vector<float*> mTargets;
    bool mSilenceFirst;
    std::optional<std::int64_t> mKeptStart;  // of the block whose channels lie in the scratch
};

void AudioReader::Blocks::Require(std::int64_t position, std::int64_t count, std::span<float* const> buffers) const {
    if (count < 0 || position > std::numeric_limits<std::int64_t>::max() - count) {
        throw Error(fmt::format("cannot read {} samples from {} on: a clip has no such stretch", count, position));
    }
    const auto given = buffers.first(std::min(buffers.size(), NumChannels()));
    if (given.size() < NumChannels() || std::ranges::find(given, nullptr) != given.end()) {
        throw Error(fmt::format("cannot read {} channels: there are buffers for {}", NumChannels(),
                                given.size() - static_cast<std::size_t>(std::ranges::count(given, nullptr))));
    }
}

// Channels that the caller has no buffer for go to the scratch, those of the clip and what the plug-in writes
// beyond them.
void AudioReader::Blocks::Request(std::int64_t blockStart, std::int64_t count, std::span<float* const> buffers,
                                  std::int64_t offset) {
    const auto channels = std::min(buffers.size(), NumChannels());
    if (channels < mTargets.size()) {
        mKeptStart.reset();  // at least in part
    }
    for (std::size_t c = 0; c < mTargets.size(); ++c) {
        mTargets[c] = c < channels ? buffers[c] + offset : Scratch(c);
    }
    for (std::size_t c = 0; mSilenceFirst && c < NumChannels(); ++c) {
        std::fill_n(mTargets[c], count, 0.0F);
    }
    mClip->Plugin().ReadAudio(mClip->ForRequest(), blockStart, static_cast<std::uint32_t>(count), mTargets.data());
}

// Of a block that is read in part the whole is made and kept: reading on in it costs no more than the copy.
void AudioReader::Blocks::Read(const BlockGrid::Block& block, std::int64_t position, std::int64_t count,
                               std::span<float* const> buffers, std::int64_t offset) {
    const std::int64_t start = block.start;
    const std::int64_t length = block.end - start;
    if (position == start && count == length) {
        Request(start, count, buffers, offset);
        return;
    }
    if (mKeptStart != start) {
        mKeptStart.reset();
        Request(start, length, {}, 0);
        mKeptStart = start;
    }
    for (std::size_t c = 0; c < NumChannels(); ++c) {
        std::copy_n(Scratch(c) + (position - start), count, buffers[c] + offset);
    }
}

AudioReader::AudioReader(const Clip& clip) {
    try {
        mBlocks = std::make_unique<Blocks>(clip);
    } catch (...) {
        RethrowAsError("cannot read the clip's sound");
    }
}

AudioReader::~AudioReader() = default;
AudioReader::AudioReader(AudioReader&&) noexcept = default;
AudioReader& AudioReader::operator=(AudioReader&&) noexcept = default;

std::int64_t AudioReader::BlockEnd(std::int64_t position) const noexcept {
    return mBlocks->Grid().BlockAt(position).end;
}

void AudioReader::Read(std::int64_t position, std::int64_t count, std::span<float* const> buffers) {
    mBlocks->Require(position, count, buffers);
    const BlockGrid& grid = mBlocks->Grid();
    BlockGrid::Block block = grid.BlockAt(position);
    for (std::int64_t done = 0; done < count; block = grid.BlockAfter(block)) {
        const std::int64_t at = position + done;
        const std::int64_t end = std::min(block.end, position + count);
        mBlocks->Read(block, at, end - at, buffers, done);
        done += end - at;
    }
}

}  // namespace lineup
