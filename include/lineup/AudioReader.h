#pragma once

#include <lineup/Api.h>
#include <lineup/Clip.h>

#include <cstdint>
#include <memory>
#include <span>

namespace lineup {

/// Reads a clip's audio in stretches of any length. The plug-in is asked in blocks that start on a fixed grid of
/// clip time, so the samples do not depend on how a caller cuts them. Allocates only when constructed. Movable; one
/// reader a thread; the clip must outlive it.
class LINEUP_API AudioReader {
public:
    explicit AudioReader(const Clip& clip);
    ~AudioReader();
    AudioReader(AudioReader&&) noexcept;
    AudioReader& operator=(AudioReader&&) noexcept;
    AudioReader(const AudioReader&) = delete;
    AudioReader& operator=(const AudioReader&) = delete;

    /// Fills buffers[c][0] .. buffers[c][count - 1] from sample `position` on; what the plug-in leaves unwritten is
    /// silence. There is a buffer for each of the clip's channels, in the plug-in's order, which is that of a
    /// ChannelLayout's channels: M; L, R; L, R, Ls, Rs, C, LFE. Files order 5.1 otherwise (ChannelLayout::fileOrder).
    /// Further buffers are not touched. Throws Error for fewer buffers than channels or a null one, a count below 0,
    /// or a position + count that does not fit 64 bits, and when the plug-in refuses.
    void Read(std::int64_t position, std::int64_t count, std::span<float* const> buffers);

    /// The end of the block that holds sample `position`. A block that is read in one piece goes straight to
    /// the caller's buffers; of one that is read in parts a copy is kept until another is read.
    [[nodiscard]] std::int64_t BlockEnd(std::int64_t position) const noexcept;

private:
    class Blocks;

    std::unique_ptr<Blocks> mBlocks;
};

}  // namespace lineup
