#pragma once

#include <lineup/Api.h>
#include <lineup/BlockGrid.h>
#include <lineup/Clip.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace lineup {

/// Reads a clip's audio in stretches of any length. The plug-in is asked in the blocks of BlockGrid, so
/// the samples do not depend on how a caller cuts them. Allocates only when constructed. One reader a
/// thread; the clip must outlive it.
class LINEUP_API AudioReader {
public:
    explicit AudioReader(const Clip& clip);

    /// Fills buffers[c][0] .. buffers[c][count - 1] with the clip's channels, in the plug-in's order,
    /// from sample `position` on; what the plug-in leaves unwritten is silence. `buffers` holds
    /// Clip::NumChannels() pointers; count is 0 or more. Throws Error when position + count does not fit
    /// 64 bits.
    void Read(std::int64_t position, std::int64_t count, std::span<float* const> buffers);

    /// The end of the block that holds sample `position`. A block that is read in one piece goes straight to
    /// the caller's buffers; of one that is read in parts a copy is kept until another is read.
    [[nodiscard]] std::int64_t BlockEnd(std::int64_t position) const noexcept;

private:
    void Request(std::int64_t blockStart, std::int64_t count, std::span<float* const> buffers, std::int64_t offset);
    void CopyFromBlock(std::int64_t blockStart, std::int64_t first, std::int64_t last, std::span<float* const> buffers,
                       std::int64_t offset);

    const Clip* mClip;
    BlockGrid mGrid;
    std::int64_t mLongestBlock;
    std::vector<float> mScratch;
    std::vector<float*> mTargets;
    bool mSilenceFirst;
    std::optional<std::int64_t> mKeptStart;  // of the block whose channels lie in the scratch
};

}  // namespace lineup
