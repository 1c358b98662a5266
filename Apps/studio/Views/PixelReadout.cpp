#include "Apps/studio/Views/PixelReadout.h"

#include "Apps/studio/Window/Theme.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace studio {

namespace {

constexpr int kSwatch = 26;
constexpr int kPadding = 8;
constexpr double kLeastText = 0.6;  // of the usual size, where there is little room

QString Percent(float value) {
    const double tenths = std::round(static_cast<double>(value) * 1000) / 10 + 0.0;  // + 0.0: no minus before 0
    return QString(tenths < 0 ? "\u2212%1 %" : "%1 %").arg(std::abs(tenths), 0, 'f', 1);
}

QColor ScreenColour(const Rgb& colour) {
    const auto part = [](float value) { return std::clamp(value, 0.0F, 1.0F); };
    return QColor::fromRgbF(part(colour.r), part(colour.g), part(colour.b));
}

}  // namespace

PixelReadout::PixelReadout(QWidget* parent) : QWidget(parent) {
    setObjectName("readout");
    setAccessibleName(tr("Pixel value"));
    setToolTip(tr("Y'CbCr by the matrix of the export, and R'G'B'; 10-bit codes of legal range, black 64, white 940"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void PixelReadout::Show(QPoint pixel, const Ycc& value, Matrix matrix) {
    mMatrix = matrix;
    mPixel = pixel;
    mValue = value;
    setAccessibleDescription(Text());
    update();
}

void PixelReadout::Clear() {
    mPixel.reset();
    setAccessibleDescription({});
    update();
}

std::array<PixelReadout::Cell, 6> PixelReadout::Cells() const {
    const Rgb rgb = ToRgb(mValue, mMatrix);
    const auto luma = [](const char* name, float value) {
        return Cell{QString::fromUtf8(name), Percent(value), QString::number(LumaCode10(value))};
    };
    const auto chroma = [](const char* name, float value) {
        return Cell{QString::fromUtf8(name), Percent(value), QString::number(ChromaCode10(value))};
    };
    return {luma("Y\u2032", mValue.y), chroma("Cb", mValue.cb), chroma("Cr", mValue.cr),
            luma("R\u2032", rgb.r),    luma("G\u2032", rgb.g),  luma("B\u2032", rgb.b)};
}

QString PixelReadout::Text() const {
    if (!mPixel) {
        return {};
    }
    QString text = QString("x %1 y %2  %3").arg(mPixel->x()).arg(mPixel->y()).arg(NameOf(mMatrix));
    for (const Cell& cell : Cells()) {
        text += QString("  %1 %2 %3").arg(cell.name, cell.percent, cell.code);
    }
    return text;
}

QSize PixelReadout::sizeHint() const {
    return {500, 2 * fontMetrics().height() + kPadding};
}

QSize PixelReadout::minimumSizeHint() const {
    return {200, sizeHint().height()};
}

void PixelReadout::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Theme& theme = Theme::Current();
    const int line = fontMetrics().height();
    const int top = (height() - 2 * line) / 2;
    if (!mPixel) {
        painter.setPen(theme.dim);
        painter.drawText(rect().adjusted(kPadding, 0, 0, 0), Qt::AlignVCenter,
                         tr("Point at the picture to read a pixel"));
        return;
    }
    const QRect swatch(kPadding, (height() - kSwatch) / 2, kSwatch, kSwatch);
    painter.fillRect(swatch, ScreenColour(ToRgb(mValue, mMatrix)));
    painter.setPen(theme.line);
    painter.drawRect(swatch);
    int x = swatch.right() + kPadding;
    const int placeWidth = fontMetrics().horizontalAdvance("y 0000") + 2 * kPadding;
    painter.setPen(theme.dim);
    painter.drawText(QRect(x, top, placeWidth, line), Qt::AlignVCenter, QString("x %1").arg(mPixel->x()));
    painter.drawText(QRect(x, top + line, placeWidth, line), Qt::AlignVCenter, QString("y %1").arg(mPixel->y()));
    x += placeWidth;
    const auto cells = Cells();
    const int wanted = fontMetrics().horizontalAdvance("Cb \u2212100.0 %") + kPadding;
    const int cellWidth = std::min((width() - x) / (static_cast<int>(cells.size()) + 1), wanted + kPadding);
    if (cellWidth < wanted) {
        QFont narrow = font();
        narrow.setPointSizeF(narrow.pointSizeF() * std::max(kLeastText, static_cast<double>(cellWidth) / wanted));
        painter.setFont(narrow);
    }
    painter.setPen(theme.dim);
    painter.drawText(QRect(x, top, cellWidth, 2 * line), Qt::AlignVCenter, NameOf(mMatrix));
    x += cellWidth;
    for (const Cell& cell : cells) {
        const int nameWidth = painter.fontMetrics().horizontalAdvance("Cb ") + 2;
        painter.setPen(theme.dim);
        painter.drawText(QRect(x, top, nameWidth, line), Qt::AlignVCenter, cell.name);
        painter.setPen(theme.text);
        painter.drawText(QRect(x + nameWidth, top, cellWidth, line), Qt::AlignVCenter, cell.percent);
        painter.setPen(theme.dim);
        painter.drawText(QRect(x + nameWidth, top + line, cellWidth, line), Qt::AlignVCenter, cell.code);
        x += cellWidth;
    }
}

}  // namespace studio
