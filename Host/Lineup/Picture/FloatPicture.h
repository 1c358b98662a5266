#pragma once

#include <lineup/Api.h>
#include <lineup/Card.h>
#include <lineup/Clip.h>
#include "Host/Services/Frames/FrameMemory.h"

#include <cstddef>
#include <span>

namespace lineup {
inline namespace parts {

/// A picture as three float planes, Y', Cb, Cr, top line first: Y' from 0 (black) to 1 (white), chroma
/// from -0.5 to 0.5, nothing clipped. Every line starts on a 64-byte boundary. Movable.
class LINEUP_API FloatPicture {
public:
    static constexpr int kPlanes = 3;

    /// Planes of zeros. Sizes are 1 or more.
    FloatPicture(int width, int height);

    [[nodiscard]] int Width() const noexcept { return mWidth; }
    [[nodiscard]] int Height() const noexcept { return mHeight; }

    /// From one line of a plane to the next.
    [[nodiscard]] std::ptrdiff_t StrideBytes() const noexcept;

    /// The Width() values of one line; plane 0 is Y', 1 Cb, 2 Cr.
    [[nodiscard]] std::span<float> Line(int plane, int line) noexcept;
    [[nodiscard]] std::span<const float> Line(int plane, int line) const noexcept;

private:
    [[nodiscard]] std::size_t NumValues() const noexcept;
    [[nodiscard]] float* Values() const noexcept;
    [[nodiscard]] std::size_t Offset(int plane, int line) const noexcept;

    int mWidth;
    int mHeight;
    std::size_t mStride;  // floats
    zelcore::FrameMemory mMemory;
};

/// The card that `card` stands for in a picture of `height` lines: HD or SD.
LINEUP_API Card ResolveCard(Card card, int height);

/// Draws the clip's picture. Its numbers are BT.601 Y'CbCr on either card.
LINEUP_API FloatPicture ReadPicture(const Clip& clip, int width, int height, Card card);

}  // namespace parts
}  // namespace lineup
