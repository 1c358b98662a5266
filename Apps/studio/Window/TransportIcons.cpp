#include "Apps/studio/Window/TransportIcons.h"

#include "Apps/studio/Window/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace studio {

namespace {

constexpr int kSize = 64;  // pixels; scaled down by the icon

// In a square of 16 units.
QPainterPath PathOf(Glyph glyph) {
    QPainterPath path;
    switch (glyph) {
        case Glyph::Play:
            path.addPolygon(QPolygonF({{4, 2}, {14, 8}, {4, 14}}));
            break;
        case Glyph::Pause:
            path.addRect(3.5, 2, 3, 12);
            path.addRect(9.5, 2, 3, 12);
            break;
        case Glyph::ToStart:
            path.addRect(2.5, 2.5, 2.2, 11);
            path.addPolygon(QPolygonF({{13.5, 2.5}, {5.5, 8}, {13.5, 13.5}}));
            break;
        case Glyph::Sound:
        case Glyph::Muted:
            path.addPolygon(QPolygonF({{1.5, 5.5}, {4.5, 5.5}, {8.5, 2}, {8.5, 14}, {4.5, 10.5}, {1.5, 10.5}}));
            break;
        case Glyph::Loop:
            path.addPolygon(QPolygonF({{10.4, 0.4}, {14.4, 3.4}, {10.4, 6.4}}));
            path.addPolygon(QPolygonF({{5.6, 9.6}, {1.6, 12.6}, {5.6, 15.6}}));
            break;
    }
    return path;
}

QPixmap Draw(Glyph glyph, const QColor& colour) {
    QPixmap pixmap(kSize, kSize);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(kSize / 16.0, kSize / 16.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPath(PathOf(glyph));
    if (glyph == Glyph::Sound || glyph == Glyph::Muted) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap));
        if (glyph == Glyph::Sound) {
            painter.drawArc(QRectF(7, 5, 5, 6), -60 * 16, 120 * 16);
            painter.drawArc(QRectF(6, 2.5, 9, 11), -60 * 16, 120 * 16);
        } else {
            painter.drawLine(QPointF(10.5, 5.5), QPointF(15, 10.5));
            painter.drawLine(QPointF(15, 5.5), QPointF(10.5, 10.5));
        }
    }
    if (glyph == Glyph::Loop) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colour, 1.7, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        painter.drawPolyline(QPolygonF({{2.6, 8.2}, {2.6, 3.4}, {10.6, 3.4}}));
        painter.drawPolyline(QPolygonF({{13.4, 7.8}, {13.4, 12.6}, {5.4, 12.6}}));
    }
    return pixmap;
}

}  // namespace

QIcon MakeIcon(Glyph glyph) {
    const Theme& theme = Theme::Current();
    QIcon icon(Draw(glyph, theme.text));
    icon.addPixmap(Draw(glyph, theme.dim), QIcon::Disabled);
    icon.addPixmap(Draw(glyph, theme.onAccent), QIcon::Normal, QIcon::On);
    return icon;
}

}  // namespace studio
