#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

namespace studio {

/// How a band of a waveform is drawn: translucent between two opaque edges of `edgePixels` each.
struct BandStyle {
    QColor colour;
    int opacity = 255;  ///< of what lies between the edges, up to 255
    int edgePixels = 1;
};

/// Draws a stretch of a band over what `image` (Format_RGB32) holds. `band` is in its pixels; what lies outside
/// of the image is left out, and a band of no height gets one pixel. Qt's own fillRect shares rectangles of many
/// lines out among threads, whatever their width, and waits for those: a thousand columns took tens of
/// milliseconds.
void FillBand(QImage& image, QRect band, const BandStyle& style);

/// Draws one column of a line: `colour` from `top` to `bottom`, which may lie within pixels; those are covered in
/// part. Nothing when x lies outside of the image.
void FillColumn(QImage& image, int x, double top, double bottom, const QColor& colour);

}  // namespace studio
