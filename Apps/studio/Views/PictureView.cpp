#include "Apps/studio/Views/PictureView.h"

#include "Apps/studio/Window/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace studio {

namespace {

constexpr int kMargin = 8;
constexpr int kBigStep = 10;  // pixels, with Shift
constexpr int kCross = 7;

std::optional<QPoint> StepOf(const QKeyEvent& event) {
    const int step = event.modifiers().testFlag(Qt::ShiftModifier) ? kBigStep : 1;
    switch (event.key()) {
        case Qt::Key_Left:
            return QPoint(-step, 0);
        case Qt::Key_Right:
            return QPoint(step, 0);
        case Qt::Key_Up:
            return QPoint(0, -step);
        case Qt::Key_Down:
            return QPoint(0, step);
        default:
            return std::nullopt;
    }
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
    setObjectName("picture");
    setAccessibleName(tr("Picture"));
    setAccessibleDescription(tr("The clip's picture. The arrow keys point at a pixel, whose value is shown below."));
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
    // The window has its own use for the arrow keys; here they point.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* const key = dynamic_cast<QKeyEvent*>(event);
        if (key != nullptr && StepOf(*key)) {
            event->accept();
            return true;
        }
    }
    return QWidget::event(event);
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
    if (mPixel && mByKey) {
        const QPointF centre(frame.x() + (mPixel->x() + 0.5) * frame.width() / mPicture->Width(),
                             frame.y() + (mPixel->y() + 0.5) * frame.height() / mPicture->Height());
        for (const auto& [colour, width] : {std::pair(QColor(Qt::black), 3.0), std::pair(QColor(Qt::white), 1.0)}) {
            painter.setPen(QPen(colour, width));
            painter.drawLine(centre - QPointF(kCross, 0), centre + QPointF(kCross, 0));
            painter.drawLine(centre - QPointF(0, kCross), centre + QPointF(0, kCross));
        }
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

void PictureView::keyPressEvent(QKeyEvent* event) {
    const auto step = StepOf(*event);
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
