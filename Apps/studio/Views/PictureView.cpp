#include "Apps/studio/Views/PictureView.h"

#include "Apps/studio/Views/ArrowStep.h"
#include "Apps/studio/Window/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace studio {

namespace {

constexpr int kMargin = 8;
constexpr int kCross = 7;
constexpr int kProbeRadius = 5;

// With a dark edge and a light one, so that it shows on every colour.
template <class Draw>
void DrawMark(QPainter& painter, Draw draw) {
    for (const auto& [colour, width] : {std::pair(QColor(Qt::black), 3.0), std::pair(QColor(Qt::white), 1.0)}) {
        painter.setPen(QPen(colour, width));
        draw();
    }
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
    setObjectName("picture");
    setAccessibleName(tr("Picture"));
    setAccessibleDescription(
        tr("The clip's picture. The arrow keys point at a pixel, whose value is shown below; Enter "
           "pins it, or takes a pin away."));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureView::SetPicture(std::shared_ptr<const CardPicture> picture) {
    mPicture = std::move(picture);
    mScaled = {};
    if (mPixel && (mPicture == nullptr || !QRect(0, 0, mPicture->Width(), mPicture->Height()).contains(*mPixel))) {
        mPixel.reset();
    }
    Q_EMIT PixelPointedAt(mPixel);
    update();
}

QRectF PictureView::Frame() const {
    if (mPicture == nullptr) {
        return {};
    }
    const QRectF room = QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
    QSizeF size(mPicture->Width() * mPicture->PixelAspect(), mPicture->Height());
    size.scale(room.size(), Qt::KeepAspectRatio);
    QRectF frame(QPointF(), size);
    frame.moveCenter(room.center());
    return frame.toRect();  // whole pixels: the bars' edges stay sharp
}

bool PictureView::event(QEvent* event) {
    return TakesArrowKey(*event) || QWidget::event(event);
}

void PictureView::SetProbes(std::vector<QPoint> probes) {
    mProbes = std::move(probes);
    update();
}

void PictureView::SetOutlines(std::vector<QRectF> outlines) {
    mOutlines = std::move(outlines);
    update();
}

// Inside their areas, so that neighbours keep their own.
void PictureView::DrawOutlines(QPainter& painter) const {
    const QRectF frame = Frame();
    const double across = frame.width() / mPicture->Width();
    const double down = frame.height() / mPicture->Height();
    for (const QRectF& area : mOutlines) {
        const QRectF shown(frame.x() + area.x() * across, frame.y() + area.y() * down, area.width() * across,
                           area.height() * down);
        for (const auto& [colour, width] :
             {std::pair(QColor(Qt::black), 3.0), std::pair(Theme::Current().scopeFault, 1.5)}) {
            painter.setPen(QPen(colour, width));
            painter.drawRect(shown.adjusted(2, 2, -2, -2));
        }
    }
}

QPointF PictureView::CentreOf(QPoint pixel) const {
    const QRectF frame = Frame();
    return {frame.x() + (pixel.x() + 0.5) * frame.width() / mPicture->Width(),
            frame.y() + (pixel.y() + 0.5) * frame.height() / mPicture->Height()};
}

void PictureView::DrawProbes(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    for (std::size_t i = 0; i < mProbes.size(); ++i) {
        const QPointF centre = CentreOf(mProbes[i]);
        DrawMark(painter, [&] { painter.drawEllipse(centre, kProbeRadius, kProbeRadius); });
        const QString number = QString::number(i + 1);
        const QRectF box(centre + QPointF(kProbeRadius + 2, -fontMetrics().height()),
                         QSizeF(fontMetrics().horizontalAdvance(number) + 4, fontMetrics().height()));
        painter.fillRect(box, QColor(0, 0, 0, 190));
        painter.setPen(Qt::white);
        painter.drawText(box, Qt::AlignCenter, number);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const Theme& theme = Theme::Current();
    painter.fillRect(rect(), theme.surround);
    if (mPicture == nullptr) {
        return;
    }
    const QRectF frame = Frame();
    const QSize pixels = (frame.size() * devicePixelRatioF()).toSize();
    if (mScaled.size() != pixels) {
        mScaled = mPicture->Screen().scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    painter.drawImage(frame, mScaled);
    DrawOutlines(painter);
    DrawProbes(painter);
    if (mPixel && mByKey) {
        const QPointF centre = CentreOf(*mPixel);
        DrawMark(painter, [&] {
            painter.drawLine(centre - QPointF(kCross, 0), centre + QPointF(kCross, 0));
            painter.drawLine(centre - QPointF(0, kCross), centre + QPointF(0, kCross));
        });
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.drawRect(frame.adjusted(-3, -3, 3, 3));
    }
}

void PictureView::resizeEvent(QResizeEvent* event) {
    mScaled = {};
    QWidget::resizeEvent(event);
}

void PictureView::PointAt(std::optional<QPoint> pixel, bool byKey) {
    mPixel = pixel;
    mByKey = byKey;
    Q_EMIT PixelPointedAt(mPixel);
    update();
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
    const QRectF frame = Frame();
    if (mPicture == nullptr || !frame.contains(event->position())) {
        PointAt(std::nullopt, false);
        return;
    }
    const QPointF share = event->position() - frame.topLeft();
    const auto x = static_cast<int>(share.x() / frame.width() * mPicture->Width());
    const auto y = static_cast<int>(share.y() / frame.height() * mPicture->Height());
    PointAt(QPoint(std::min(x, mPicture->Width() - 1), std::min(y, mPicture->Height() - 1)), false);
}

void PictureView::leaveEvent(QEvent* event) {
    PointAt(std::nullopt, false);
    QWidget::leaveEvent(event);
}

// As near as a finger's breadth to a probe is on it.
void PictureView::Pin() {
    constexpr double kReach = 8;  // points
    if (mPixel) {
        Q_EMIT PinWanted(*mPixel, static_cast<int>(std::ceil(kReach * mPicture->Width() / Frame().width())));
    }
}

void PictureView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        mouseMoveEvent(event);
        Pin();
    }
    QWidget::mousePressEvent(event);
}

void PictureView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        Pin();
        return;
    }
    const auto step = ArrowStep(*event);
    if (!step || mPicture == nullptr) {
        QWidget::keyPressEvent(event);
        return;
    }
    const QPoint from = mPixel.value_or(QPoint(mPicture->Width() / 2, mPicture->Height() / 2));
    const QPoint to = from + *step;
    PointAt(QPoint(std::clamp(to.x(), 0, mPicture->Width() - 1), std::clamp(to.y(), 0, mPicture->Height() - 1)), true);
}

void PictureView::focusOutEvent(QFocusEvent* event) {
    if (mByKey) {
        PointAt(std::nullopt, false);
    }
    QWidget::focusOutEvent(event);
}

}  // namespace studio
