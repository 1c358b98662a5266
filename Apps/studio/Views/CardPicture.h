#pragma once

#include <lineup/Clip.h>
#include <lineup/PictureFormat.h>
#include "Apps/studio/Views/Colour.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <QImage>
#include <span>
#include <vector>

namespace studio {

/// One luma value that pixels of a column have, and how many of them.
struct LumaCount {
    float luma;
    int pixels;
};

/// A clip's frame, made ready to be looked at: its values by a matrix, the picture for the screen, and what the
/// waveform monitor shows. Never changes once made.
class CardPicture {
public:
    /// Asks the plug-in for the frame, whose numbers are BT.601, and converts those to `matrix`. Throws lineup::Error
    /// when it refuses. Any thread.
    CardPicture(const lineup::Clip& clip, const lineup::PictureFormat& format, Matrix matrix);

    [[nodiscard]] Matrix ShownMatrix() const noexcept { return mMatrix; }

    [[nodiscard]] int Width() const noexcept { return mFrame.Width(); }
    [[nodiscard]] int Height() const noexcept { return mFrame.Height(); }

    /// How much wider than high a pixel is shown: 1 but in standard-definition pictures 720 wide.
    [[nodiscard]] double PixelAspect() const noexcept { return mPixelAspect; }

    [[nodiscard]] Ycc At(int x, int y) const noexcept;

    /// Full-range 8-bit R'G'B', the same by either matrix; what a screen cannot show is clipped.
    [[nodiscard]] const QImage& Screen() const noexcept { return mScreen; }

    /// Every value of column `x`, darkest first.
    [[nodiscard]] std::span<const LumaCount> LumaOf(int x) const noexcept;

private:
    Matrix mMatrix;
    lineup::FloatPicture mFrame;
    double mPixelAspect;
    QImage mScreen;
    std::vector<LumaCount> mLuma;        // column after column
    std::vector<std::size_t> mLumaEnds;  // of each column in mLuma
};

}  // namespace studio
