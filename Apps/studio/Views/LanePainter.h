#pragma once

#include <lineup/Clip.h>
#include <lineup/WaveformOverview.h>
#include "Apps/lanes/Drawing.h"
#include "Apps/studio/Views/LaneSpan.h"

#include <QFont>
#include <QPixmap>
#include <QRectF>
#include <cstddef>
#include <vector>

namespace studio {

/// Paints what `drawing` lists on a picture of `size` pixels, in the family and style of `font`. Not by Qt's own
/// fillRect, which shares rectangles of many lines out among threads, whatever their width, and waits for those: a
/// thousand columns took tens of milliseconds.
[[nodiscard]] QImage Paint(const lanes::Drawing& drawing, QSize size, const QFont& font);

/// Where the lanes of a clip stand in a view, in points.
struct LaneView {
    QSize size;
    int gutter = 0;  ///< where the plot begins; names and levels stand to the left of it
    double pixelRatio = 1;
    QFont font;

    /// Above the lanes: the times.
    static constexpr int kRulerHeight = 22;
};

/// Where the lanes of so many channels stand in a view that shows `span`, from the top down, in points.
[[nodiscard]] std::vector<QRectF> LaneRects(const LaneSpan& span, const LaneView& view, std::size_t lanes);

/// Draws the channels `order` of an overview of what is visible, one a lane.
[[nodiscard]] QPixmap DrawOverview(const lineup::WaveformOverview& overview, const std::vector<std::size_t>& order,
                                   const LaneSpan& span, const LaneView& view);

/// Asks the plug-in for what is visible, a column a pixel, and draws a lane a channel, in the order of files. Throws
/// lineup::Error.
[[nodiscard]] QPixmap DrawClip(const lineup::Clip& clip, const LaneSpan& span, const LaneView& view);

}  // namespace studio
