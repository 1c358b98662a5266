#include "Apps/studio/Views/LanePainter.h"

#include "Apps/lanes/LaneDrawing.h"
#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>

using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace studio {

namespace {

// In points.
constexpr int kLaneGap = 3;
constexpr double kLevelsGap = 6;  // from the levels to the plot
constexpr double kNamesX = 8;
constexpr double kLevelSize = 0.8;  // of the view's type

// Puts a colour over pixels. Neighbours are mostly alike, so that the last mixture mostly serves again.
class Glaze {
public:
    Glaze(QRgb colour, double opacity) : mColour(colour), mOpacity(opacity), mMixed(Mix()) {}

    QRgb Over(QRgb below) noexcept {
        if (below != mBelow) {
            mBelow = below;
            mMixed = Mix();
        }
        return mMixed;
    }

private:
    [[nodiscard]] int Mix(int below, int above) const noexcept {
        return static_cast<int>(std::lround(below + (above - below) * mOpacity));
    }
    [[nodiscard]] QRgb Mix() const noexcept {
        return qRgb(Mix(qRed(mBelow), qRed(mColour)), Mix(qGreen(mBelow), qGreen(mColour)),
                    Mix(qBlue(mBelow), qBlue(mColour)));
    }

    QRgb mColour;
    double mOpacity;
    QRgb mBelow = 0;
    QRgb mMixed;
};

void FillBox(QImage& image, const lanes::Box& box) {
    const auto edge = [](double place, int most) { return static_cast<int>(std::clamp<double>(place, 0, most)); };
    const int left = edge(std::round(box.area.x), image.width());
    const int right = edge(std::round(box.area.Right()), image.width());
    const int bottom = edge(std::ceil(box.area.Bottom()), image.height());
    for (int y = edge(std::floor(box.area.y), image.height()); y < bottom; ++y) {
        const double covered = std::min(y + 1.0, box.area.Bottom()) - std::max<double>(y, box.area.y);
        Glaze glaze(box.colour, box.opacity * std::max(0.0, covered));
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::transform(line + left, line + right, line + left, [&](QRgb below) { return glaze.Over(below); });
    }
}

QFont FontOf(QFont font, const lanes::TextStyle& style) {
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(style.size))));
    font.setBold(style.bold);
    return font;
}

lanes::LaneSheet Sheet(const LaneView& view, std::size_t lanes, double plotWidth) {
    const double ratio = view.pixelRatio;
    const double type = QFontInfo(view.font).pixelSize() * ratio;
    const double left = std::round(view.gutter * ratio);
    lanes::LaneSheet sheet{.width = view.size.width() * ratio,
                           .height = view.size.height() * ratio,
                           .unit = ratio,
                           .lanes = {},
                           .namesX = kNamesX * ratio,
                           .levelsRight = left - kLevelsGap * ratio,
                           .levelUnitX = kNamesX * ratio,
                           .levelUnitY = LaneView::kRulerHeight * ratio / 2,
                           .timesY = LaneView::kRulerHeight * ratio / 2,
                           .nameSize = type,
                           .levelSize = kLevelSize * type,
                           .timeSize = type};
    const double top = LaneView::kRulerHeight * ratio;
    const double pitch = (sheet.height - top) / static_cast<double>(lanes);
    for (std::size_t i = 0; i < lanes; ++i) {
        const double from = std::round(top + pitch * static_cast<double>(i));
        const double to = std::round(top + pitch * static_cast<double>(i + 1) - kLaneGap * ratio);
        sheet.lanes.push_back({left, from, plotWidth, std::max(1.0, to - from)});
    }
    return sheet;
}

// Of pixels.
double PlotWidth(const LaneSpan& span, const LaneView& view) {
    return std::round(span.Width() * view.pixelRatio);
}

lineup::WaveformOverview Read(const lineup::Clip& clip, const LaneSpan& span, double plotWidth) {
    const double seconds = span.Visible() / static_cast<double>(clip.SampleRate());
    const auto ticks = std::llround(seconds * static_cast<double>(kTicksPerSecond));
    const std::int64_t shortest = lineup::kShortestColumn.Ticks();
    const std::int64_t length = std::max<std::int64_t>(ticks, shortest);
    const auto columns = std::min<std::int64_t>(
        {std::max<std::int64_t>(1, std::llround(plotWidth)), lineup::kMostOverviewColumns, length / shortest});
    return lineup::ReadOverview(
        clip, {.startSample = span.Start(), .length = TickTime(length), .columns = static_cast<int>(columns)});
}

}  // namespace

QImage Paint(const lanes::Drawing& drawing, QSize size, const QFont& font) {
    QImage image(size, QImage::Format_RGB32);
    for (const lanes::Box& box : drawing.boxes) {
        FillBox(image, box);
    }
    QPainter painter(&image);
    for (const lanes::Label& label : drawing.labels) {
        painter.setFont(FontOf(font, label.style));
        painter.setPen(QColor(label.style.colour));
        painter.drawText(QPointF(label.box.x, label.box.Bottom()), QString::fromStdString(label.text));
    }
    return image;
}

std::vector<QRectF> LaneRects(const LaneSpan& span, const LaneView& view, std::size_t lanes) {
    const double ratio = view.pixelRatio;
    std::vector<QRectF> rects;
    for (const lanes::Rectangle& lane : Sheet(view, lanes, PlotWidth(span, view)).lanes) {
        rects.emplace_back(lane.x / ratio, lane.y / ratio, lane.width / ratio, lane.height / ratio);
    }
    return rects;
}

QPixmap DrawOverview(const lineup::WaveformOverview& overview, const std::vector<std::size_t>& order,
                     const LaneSpan& span, const LaneView& view) {
    const auto measure = [&view](const std::string& text, const lanes::TextStyle& style) {
        return QFontMetricsF(FontOf(view.font, style)).horizontalAdvance(QString::fromStdString(text));
    };
    const auto drawing =
        DrawLanes(overview, order, Sheet(view, order.size(), PlotWidth(span, view)), Theme::Current().Lanes(), measure);
    QPixmap pixmap = QPixmap::fromImage(Paint(drawing, view.size * view.pixelRatio, view.font));
    pixmap.setDevicePixelRatio(view.pixelRatio);
    return pixmap;
}

QPixmap DrawClip(const lineup::Clip& clip, const LaneSpan& span, const LaneView& view) {
    std::vector<std::size_t> order;
    for (const ShownChannel& channel : ShownChannels(clip)) {
        order.push_back(channel.index);
    }
    return DrawOverview(Read(clip, span, PlotWidth(span, view)), order, span, view);
}

}  // namespace studio
