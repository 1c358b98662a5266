#include "Apps/studio/Views/BandFill.h"

#include <algorithm>
#include <cmath>

namespace studio {

namespace {

constexpr int kOpaque = 255;

// Puts a colour over pixels. Neighbours are mostly alike, so that the last mixture mostly serves again.
class Glaze {
public:
    Glaze(const QColor& colour, int opacity) : mColour(colour.rgb()), mOpacity(opacity), mMixed(Mix()) {}

    QRgb Over(QRgb below) noexcept {
        if (below != mBelow) {
            mBelow = below;
            mMixed = Mix();
        }
        return mMixed;
    }

private:
    [[nodiscard]] int Mix(int below, int above) const noexcept {
        return (below * (kOpaque - mOpacity) + above * mOpacity + kOpaque / 2) / kOpaque;
    }
    [[nodiscard]] QRgb Mix() const noexcept {
        return qRgb(Mix(qRed(mBelow), qRed(mColour)), Mix(qGreen(mBelow), qGreen(mColour)),
                    Mix(qBlue(mBelow), qBlue(mColour)));
    }

    QRgb mColour;
    int mOpacity;
    QRgb mBelow = 0;
    QRgb mMixed;
};

}  // namespace

void FillBand(QImage& image, QRect band, const BandStyle& style) {
    if (band.width() <= 0) {
        return;
    }
    band.setHeight(std::max(band.height(), 1));
    const QRect visible = band & image.rect();
    const int edge = std::min(style.edgePixels, band.height());
    Glaze solid(style.colour, kOpaque);
    Glaze inside(style.colour, style.opacity);
    for (int y = visible.top(); y <= visible.bottom(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        Glaze& glaze = y < band.top() + edge || y > band.bottom() - edge ? solid : inside;
        for (int x = visible.left(); x <= visible.right(); ++x) {
            line[x] = glaze.Over(line[x]);
        }
    }
}

void FillColumn(QImage& image, int x, double top, double bottom, const QColor& colour) {
    if (x < 0 || x >= image.width()) {
        return;
    }
    const int first = std::max(0, static_cast<int>(std::floor(top)));
    const int last = std::min(image.height() - 1, static_cast<int>(std::ceil(bottom)) - 1);
    for (int y = first; y <= last; ++y) {
        const double covered = std::min(y + 1.0, bottom) - std::max<double>(y, top);
        QRgb& pixel = reinterpret_cast<QRgb*>(image.scanLine(y))[x];
        pixel = Glaze(colour, static_cast<int>(std::lround(std::max(0.0, covered) * kOpaque))).Over(pixel);
    }
}

}  // namespace studio
