#include "Apps/studio/Views/VectorscopeView.h"

#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Views/Beam.h"
#include "Apps/studio/Window/Theme.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace studio {

namespace {

constexpr double kEdgeChroma = 0.55;  // at the edge of the plot: full-amplitude bars and their targets lie within
constexpr int kScopeMargin = 8;

struct Target {
    const char* name = "";
    Rgb colour = {};
};
constexpr std::array<Target, 6> kTargets = {
    {{"R", {1, 0, 0}}, {"YL", {1, 1, 0}}, {"G", {0, 1, 0}}, {"CY", {0, 1, 1}}, {"B", {0, 0, 1}}, {"MG", {1, 0, 1}}}};

}  // namespace

VectorscopeView::VectorscopeView(QWidget* parent) : Scope(parent) {
    setObjectName("vectorscope");
    setAccessibleName(tr("Vectorscope"));
    setToolTip(
        tr("Chroma of the picture, Cb to the right and Cr upwards; the small targets are bars of 75 %, the "
           "large ones of 100 %"));
}

QRectF VectorscopeView::Plot() const {
    const QRectF room = QRectF(rect()).adjusted(kScopeMargin, kScopeMargin, -kScopeMargin, -kScopeMargin);
    const double side = std::floor(std::max(1.0, std::min(room.width(), room.height())));
    return {std::round(room.center().x() - side / 2), std::round(room.center().y() - side / 2), side, side};
}

QPointF VectorscopeView::Place(double cb, double cr) const {
    const QRectF plot = Plot();
    return plot.center() + QPointF(cb, -cr) * (plot.width() / 2 / kEdgeChroma);
}

void VectorscopeView::DrawTargets(QPainter& painter, double amplitude) const {
    const Theme& theme = Theme::Current();
    const bool isFull = amplitude == 1;
    painter.setPen(QPen(isFull ? theme.scopeNumber : theme.scopeStrong, 1));
    const double half = (isFull ? 1.4 : 1) * kTargetReach * Plot().width() / 2 / kEdgeChroma;
    for (const auto& [name, colour] : kTargets) {
        const auto scaled = static_cast<float>(amplitude);
        const Ycc chroma = ToYcc({colour.r * scaled, colour.g * scaled, colour.b * scaled}, Picture()->ShownMatrix());
        const QPointF place = Place(static_cast<double>(chroma.cb), static_cast<double>(chroma.cr));
        painter.drawRect(QRectF(place - QPointF(half, half), place + QPointF(half, half)));
        if (!isFull) {
            const double line = fontMetrics().height();
            painter.drawText(QRectF(place.x() + half + 3, place.y() - line / 2, 3 * line, line),
                             Qt::AlignLeft | Qt::AlignVCenter, name);
        }
    }
}

void VectorscopeView::DrawGraticule(QPainter& painter) const {
    const Theme& theme = Theme::Current();
    const QRectF plot = Plot();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.scopeGrid, 1));
    const double radius = plot.width() / 2 / kEdgeChroma * 0.5;  // full chroma
    painter.drawEllipse(plot.center(), radius, radius);
    painter.drawLine(QPointF(plot.left(), plot.center().y()), QPointF(plot.right(), plot.center().y()));
    painter.drawLine(QPointF(plot.center().x(), plot.top()), QPointF(plot.center().x(), plot.bottom()));
    if (Picture() != nullptr) {
        DrawTargets(painter, 0.75);
        DrawTargets(painter, 1);
        painter.setPen(theme.scopeNumber);
        painter.drawText(QRectF(rect()).adjusted(0, kScopeMargin, -10, 0), Qt::AlignRight | Qt::AlignTop,
                         NameOf(Picture()->ShownMatrix()));
    }
}

// A dot for each chroma, the brighter the more pixels have it.
QImage VectorscopeView::DrawTrace(QSize pixels) const {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const double ratio = devicePixelRatioF();
    const auto reach = static_cast<int>(std::ceil(kBeamReach * ratio));
    const double all = static_cast<double>(Picture()->Width()) * Picture()->Height();
    const auto width = static_cast<std::size_t>(pixels.width());
    std::vector<float> brightness(width * static_cast<std::size_t>(pixels.height()));
    for (const ChromaCount& count : Picture()->Chroma()) {
        const double x = (1 + static_cast<double>(count.cb) / kEdgeChroma) * pixels.width() / 2;
        const double y = (1 - static_cast<double>(count.cr) / kEdgeChroma) * pixels.height() / 2;
        const auto share = static_cast<float>(std::min(1.0, 2 * std::pow(count.pixels / all, 0.25)));
        for (int line = static_cast<int>(y) - reach; line <= static_cast<int>(y) + reach; ++line) {
            for (int column = static_cast<int>(x) - reach; column <= static_cast<int>(x) + reach; ++column) {
                if (image.valid(column, line)) {
                    brightness[static_cast<std::size_t>(line) * width + static_cast<std::size_t>(column)] +=
                        share * Beam(std::hypot(column + 0.5 - x, line + 0.5 - y) / ratio / 2);
                }
            }
        }
    }
    for (int line = 0; line < pixels.height(); ++line) {
        for (int column = 0; column < pixels.width(); ++column) {
            image.setPixel(
                column, line,
                BeamColour(brightness[static_cast<std::size_t>(line) * width + static_cast<std::size_t>(column)]));
        }
    }
    return image;
}

QString VectorscopeView::Read(QPointF place) const {
    const QRectF plot = Plot();
    const QPointF chroma = (place - plot.center()) * (kEdgeChroma / (plot.width() / 2));
    const auto cb = static_cast<float>(chroma.x());
    const auto cr = static_cast<float>(-chroma.y());
    const double degrees = std::atan2(-chroma.y(), chroma.x()) * 180 / std::numbers::pi;
    return QString("Cb %1 %2  Cr %3 %4  %5\u00B0")
        .arg(Percent(cb))
        .arg(ChromaCode10(cb))
        .arg(Percent(cr))
        .arg(ChromaCode10(cr))
        .arg(std::lround(degrees < 0 ? degrees + 360 : degrees) % 360);
}

std::vector<QPointF> VectorscopeView::PlacesOf(const Ycc& colour, int /*column*/) const {
    return {Place(static_cast<double>(colour.cb), static_cast<double>(colour.cr))};
}

}  // namespace studio
