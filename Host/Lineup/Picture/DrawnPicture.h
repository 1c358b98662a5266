#pragma once

#include <lineup/Api.h>
#include <lineup/Card.h>
#include <lineup/Clip.h>
#include <lineup/services/FrameBuffer.h>

#include <array>
#include <span>

namespace lineup {
inline namespace parts {

/// The clip's picture as the plug-in drew it, which gives the lines that are asked for as floats: Y', Cb, Cr, as
/// FloatPicture has them.
class LINEUP_API DrawnPicture {
public:
    static constexpr std::size_t kPlanes = 3;
    using Line = std::array<std::span<float>, kPlanes>;

    DrawnPicture(const Clip& clip, int width, int height, Card card);

    [[nodiscard]] int Width() const noexcept { return mFrame.Width(); }
    [[nodiscard]] int Height() const noexcept { return mFrame.Height(); }

    /// Fills Width() values of each plane with a line's, 0 at the top.
    void Unpack(int line, const Line& into) const;

    /// Every pixel of one line is as that of the other.
    [[nodiscard]] bool AreAlike(int line, int other) const;

private:
    zelcore::FrameBuffer mFrame;
};

}  // namespace parts
}  // namespace lineup
