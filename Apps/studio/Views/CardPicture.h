#pragma once

#include <lineup/Clip.h>
#include <lineup/PictureFormat.h>
#include "Apps/studio/Views/Colour.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <QImage>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace studio {

/// What of a colour a scope shows.
enum class Component : std::size_t { Luma, Red, Green, Blue, Count };

[[nodiscard]] constexpr float ValueOf(Component component, const Ycc& colour, Matrix matrix) noexcept {
    const Rgb rgb = ToRgb(colour, matrix);
    return component == Component::Luma    ? colour.y
           : component == Component::Red   ? rgb.r
           : component == Component::Green ? rgb.g
                                           : rgb.b;
}

/// One value that pixels of a column have, and how many of them.
struct LevelCount {
    float value;
    int pixels;
};

/// One chroma that pixels of the picture have, and how many of them.
struct ChromaCount {
    float cb;
    float cr;
    int pixels;
};

/// A frame, made ready to be looked at: its values by a matrix, the picture for the screen, and what the
/// scopes show. Never changes once made.
class CardPicture {
public:
    /// Asks the plug-in for the frame, whose numbers are BT.601, and converts those to `matrix`. Throws lineup::Error
    /// when it refuses. Any thread.
    CardPicture(const lineup::Clip& clip, const lineup::PictureFormat& format, Matrix matrix);

    /// A frame whose numbers are `matrix`'s already. Any thread.
    CardPicture(lineup::FloatPicture frame, Matrix matrix);

    [[nodiscard]] Matrix ShownMatrix() const noexcept { return mMatrix; }

    [[nodiscard]] int Width() const noexcept { return mFrame.Width(); }
    [[nodiscard]] int Height() const noexcept { return mFrame.Height(); }

    /// How much wider than high a pixel is shown: 1 but in standard-definition pictures 720 wide.
    [[nodiscard]] double PixelAspect() const noexcept { return mPixelAspect; }

    [[nodiscard]] Ycc At(int x, int y) const noexcept;

    /// Full-range 8-bit R'G'B', the same by either matrix; what a screen cannot show is clipped.
    [[nodiscard]] const QImage& Screen() const noexcept { return mScreen; }

    /// Every value of column `x`, least first.
    [[nodiscard]] std::span<const LevelCount> LevelsOf(Component component, int x) const noexcept;

    /// Every chroma of the picture, in no order.
    [[nodiscard]] std::span<const ChromaCount> Chroma() const noexcept { return mChroma; }

private:
    struct Columns {
        std::vector<LevelCount> levels;  // column after column
        std::vector<std::size_t> ends;   // of each column in them
    };
    // Lines below one another that are the same.
    struct Band {
        int line;
        int lines;
    };
    void Count();
    [[nodiscard]] std::vector<Band> FindBands() const;
    [[nodiscard]] Columns CountLevels(Component component, const std::vector<Band>& bands) const;
    [[nodiscard]] std::vector<ChromaCount> CountChroma(const std::vector<Band>& bands) const;

    Matrix mMatrix;
    lineup::FloatPicture mFrame;
    double mPixelAspect;
    QImage mScreen;
    std::array<Columns, static_cast<std::size_t>(Component::Count)> mColumns;
    std::vector<ChromaCount> mChroma;
};

}  // namespace studio
