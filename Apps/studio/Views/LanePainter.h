#pragma once

#include <lineup/Clip.h>
#include <lineup/WaveformOverview.h>
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Views/LaneSpan.h"

#include <QFont>
#include <QImage>
#include <QPixmap>
#include <QRectF>

namespace studio {

/// Draws the lanes of a clip: a ruler, and below it a lane a channel with its name and its waveform. What it
/// draws stays the same until span, size or theme change, so that it is drawn once.
class LanePainter {
public:
    /// `size` in points; the plot begins at `gutter`, to the left of it stand the names.
    LanePainter(const lineup::Clip& clip, const LaneSpan& span, QSize size, int gutter, double pixelRatio,
                const QFont& font);

    /// Asks the plug-in for the peaks of what is visible, a value a pixel, and draws. Throws lineup::Error.
    [[nodiscard]] QPixmap Draw();

    static constexpr int kRulerHeight = 22;

private:
    void DrawRuler(QPainter& painter) const;
    void DrawGround(QPainter& painter, const QRectF& lane, const ShownChannel& channel) const;
    void DrawBands(QImage& image, const QRectF& lane, std::size_t channel) const;
    void DrawTrace(QImage& image, const QRectF& lane, std::size_t channel) const;
    [[nodiscard]] QRectF Lane(std::size_t place, std::size_t count) const;
    [[nodiscard]] double Y(const QRectF& lane, float amplitude) const;
    [[nodiscard]] double Top() const;

    const lineup::Clip& mClip;
    const LaneSpan& mSpan;
    QSize mSize;
    int mGutter;
    double mPixelRatio;
    QFont mFont;
    lineup::WaveformOverview mOverview;
    double mScale = 1;  // the amplitude at a lane's edges
};

}  // namespace studio
