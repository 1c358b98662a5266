#pragma once

#include <lineup/services/FrameBuffer.h>
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Lineup/Validation/GuardedRecord.h"
#include "Host/Lineup/Validation/RawImporter.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lineup::validation {

/// A frame to be drawn.
struct FrameShape {
    int width = 0;
    int height = 0;
    std::uint32_t pixelFormat = kPixelFormat_VUYA_32f;
    int extraColumns = 0;  ///< by which each row in memory is longer than the picture is wide
    std::uint8_t filler = 0xCC;
};

/// The shape as a failure names it: "the frame of 64x36, VUx7".
std::string Text(const FrameShape& shape);

/// A frame whose pixels lie in guarded memory: bytes that were not drawn hold the filler, before,
/// after and between the rows.
class GuardedFrame {
public:
    explicit GuardedFrame(const FrameShape& shape);

    /// What a frame request carries.
    [[nodiscard]] vexel Handle() const noexcept { return mBuffer.Handle(); }

    /// Requests the frame in a record of its own, which must stay as it is, and returns the result code.
    [[nodiscard]] std::int32_t Send(const RawImporter& plugin, Placement placement = {}) const;

    /// The same; throws Failure when it is refused or anything outside of the picture is drawn on.
    void Draw(const RawImporter& plugin, Placement placement = {}) const;

    /// The pixels of row `row` in memory, without what lies between the rows.
    [[nodiscard]] std::span<const std::uint8_t> Row(int row) const;

    /// Throws Failure when any byte at all was written.
    void RequireUntouched(const std::string& what) const;

private:
    void RequireNothingOutside() const;
    void RequireFiller(std::size_t begin, std::size_t end, const char* place) const;

    FrameShape mShape;
    zelcore::FrameBuffer mBuffer;
    std::size_t mRowBytes;
    std::size_t mPictureRowBytes;
    std::vector<std::uint8_t> mMemory;
};

/// Makes a frame request of any size and format, which must leave its record as it is.
std::int32_t SendFrame(const RawImporter& plugin, const FrameShape& shape, vexel frame, Placement placement = {});

}  // namespace lineup::validation
