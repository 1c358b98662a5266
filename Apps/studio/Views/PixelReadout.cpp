#include "Apps/studio/Views/PixelReadout.h"

#include "Apps/studio/Document/NumberWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <array>
#include <utility>

namespace studio {

namespace {

constexpr int kSwatch = 26;
constexpr int kReadoutRoom = 8;

struct Cell {
    const char* name;
    QString percent;
    QString code;
};

// Two groups of three.
std::array<Cell, 6> CellsOf(const Ycc& value, Matrix matrix) {
    const Rgb rgb = ToRgb(value, matrix);
    const auto luma = [](const char* name, float level) {
        return Cell{name, Percent(level), QString::number(LumaCode10(level))};
    };
    const auto chroma = [](const char* name, float level) {
        return Cell{name, Percent(level), QString::number(ChromaCode10(level))};
    };
    return {luma("Y\u2032", value.y), chroma("Cb", value.cb), chroma("Cr", value.cr),
            luma("R\u2032", rgb.r),   luma("G\u2032", rgb.g), luma("B\u2032", rgb.b)};
}

QColor ScreenColour(const Rgb& colour) {
    const auto part = [](float value) { return std::clamp(value, 0.0F, 1.0F); };
    return QColor::fromRgbF(part(colour.r), part(colour.g), part(colour.b));
}

}  // namespace

PixelReadout::PixelReadout(QWidget* parent) : QWidget(parent) {
    setObjectName("readout");
    setAccessibleName(tr("Pixel values"));
    setToolTip(tr("Y'CbCr by the matrix of the export, and R'G'B'; 10-bit codes of legal range, black 64, white 940"));
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void PixelReadout::SetPicture(std::shared_ptr<const CardPicture> picture) {
    mPicture = std::move(picture);
    RowsChanged();
}

void PixelReadout::PointAt(std::optional<QPoint> pixel) {
    mPixel = pixel;
    RowsChanged();
}

void PixelReadout::SetProbes(std::vector<QPoint> probes) {
    mProbes = std::move(probes);
    updateGeometry();
    RowsChanged();
}

void PixelReadout::RowsChanged() {
    setAccessibleDescription(Text());
    update();
}

std::vector<PixelReadout::Row> PixelReadout::Rows() const {
    std::vector<Row> rows;
    if (mPicture == nullptr) {
        return rows;
    }
    if (mPixel) {
        rows.push_back({*mPixel, 0});
    }
    for (std::size_t i = 0; i < mProbes.size(); ++i) {
        rows.push_back({mProbes[i], i + 1});
    }
    return rows;
}

QString PixelReadout::TextOf(const Row& row) const {
    const Matrix matrix = mPicture->ShownMatrix();
    QString text = row.number == 0 ? QString() : QString::number(row.number) + "  ";
    text += QString("x %1 y %2  %3").arg(row.pixel.x()).arg(row.pixel.y()).arg(NameOf(matrix));
    for (const Cell& cell : CellsOf(mPicture->At(row.pixel.x(), row.pixel.y()), matrix)) {
        text += QString("  %1 %2 %3").arg(QString::fromUtf8(cell.name), cell.percent, cell.code);
    }
    return text;
}

QString PixelReadout::Text() const {
    QStringList texts;
    for (const Row& row : Rows()) {
        texts += TextOf(row);
    }
    return texts.join('\n');
}

int PixelReadout::PlaceWidth() const {
    return kSwatch + fontMetrics().horizontalAdvance("0000, 0000") + 3 * kReadoutRoom;
}

int PixelReadout::CellWidth() const {
    return std::max(fontMetrics().horizontalAdvance("Cb 1000"), fontMetrics().horizontalAdvance("\u2212100.0 %")) +
           kReadoutRoom;
}

// R'G'B' stands beside Y'CbCr, or below where there is little room.
int PixelReadout::LinesFor(int width) const {
    return width >= PlaceWidth() + 6 * CellWidth() ? 1 : 2;
}

int PixelReadout::LineHeight() const {
    return 2 * fontMetrics().height() + kReadoutRoom;
}

// The pointer's row has its room always, so that nothing moves when the pointer does.
int PixelReadout::heightForWidth(int width) const {
    return (1 + static_cast<int>(mProbes.size())) * LinesFor(width) * LineHeight();
}

QSize PixelReadout::sizeHint() const {
    const int width = PlaceWidth() + 6 * CellWidth();
    return {width, heightForWidth(width)};
}

QSize PixelReadout::minimumSizeHint() const {
    return {PlaceWidth() + 3 * CellWidth(), 2 * LineHeight()};
}

void PixelReadout::DrawPlace(QPainter& painter, const Row& row, QPoint at) const {
    const Theme& theme = Theme::Current();
    const Matrix matrix = mPicture->ShownMatrix();
    const QColor colour = ScreenColour(ToRgb(mPicture->At(row.pixel.x(), row.pixel.y()), matrix));
    const int line = fontMetrics().height();
    const QRect swatch(at.x() + kReadoutRoom, at.y() + (LineHeight() - kSwatch) / 2, kSwatch, kSwatch);
    painter.fillRect(swatch, colour);
    painter.setPen(theme.line);
    painter.drawRect(swatch);
    if (row.number > 0) {
        painter.setPen(colour.lightness() < 128 ? Qt::white : Qt::black);
        painter.drawText(swatch, Qt::AlignCenter, QString::number(row.number));
    }
    const int top = at.y() + kReadoutRoom / 2;
    const int x = swatch.right() + kReadoutRoom;
    const int width = at.x() + PlaceWidth() - x;
    painter.setPen(theme.dim);
    painter.drawText(QRect(x, top, width, line), Qt::AlignVCenter,
                     QString("%1, %2").arg(row.pixel.x()).arg(row.pixel.y()));
    painter.drawText(QRect(x, top + line, width, line), Qt::AlignVCenter, NameOf(matrix));
}

void PixelReadout::DrawRow(QPainter& painter, const Row& row, int top) const {
    const Theme& theme = Theme::Current();
    DrawPlace(painter, row, {0, top});
    const auto cells = CellsOf(mPicture->At(row.pixel.x(), row.pixel.y()), mPicture->ShownMatrix());
    const int lines = LinesFor(width());
    const int line = fontMetrics().height();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const int perLine = static_cast<int>(cells.size()) / lines;
        const int x = PlaceWidth() + static_cast<int>(i) % perLine * CellWidth();
        const int y = top + static_cast<int>(i) / perLine * LineHeight() + kReadoutRoom / 2;
        painter.setPen(theme.dim);
        painter.drawText(QRect(x, y, CellWidth(), line), Qt::AlignVCenter,
                         QString::fromUtf8(cells[i].name) + " " + cells[i].code);
        painter.setPen(theme.text);
        painter.drawText(QRect(x, y + line, CellWidth(), line), Qt::AlignVCenter, cells[i].percent);
    }
}

void PixelReadout::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const int height = LinesFor(width()) * LineHeight();
    if (!mPixel || mPicture == nullptr) {
        painter.setPen(Theme::Current().dim);
        painter.drawText(QRect(kReadoutRoom, 0, width() - 2 * kReadoutRoom, height),
                         Qt::AlignVCenter | Qt::TextWordWrap,
                         tr("Point at the picture to read a pixel; click to pin it"));
    }
    for (const Row& row : Rows()) {
        const int top = static_cast<int>(row.number) * height;
        if (top + height <= this->height()) {  // in part it could be misread
            DrawRow(painter, row, top);
        }
    }
}

void PixelReadout::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
    }
    QWidget::changeEvent(event);
}

}  // namespace studio
