#include "Apps/studio/Views/Scope.h"

#include "Apps/studio/Views/ArrowStep.h"
#include "Apps/studio/Window/Theme.h"

#include <QMouseEvent>
#include <algorithm>
#include <cmath>
#include <utility>

namespace studio {

namespace {

constexpr int kProbeRing = 4;
constexpr int kReadoutPadding = 3;
constexpr double kPatchBox = 4;  // half of its side

}  // namespace

Scope::Scope(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void Scope::SetPicture(std::shared_ptr<const CardPicture> picture) {
    mPicture = std::move(picture);
    mTrace = {};
    PointAt(mPlace);
}

void Scope::SetProbes(std::vector<QPoint> probes) {
    mProbes = std::move(probes);
    update();
}

void Scope::SetPatches(std::vector<ScopePatch> patches) {
    mPatches = std::move(patches);
    update();
}

QString Scope::Readout() const {
    return mPlace && mPicture != nullptr && Plot().contains(*mPlace) ? Read(*mPlace) : QString();
}

void Scope::PointAt(std::optional<QPointF> place) {
    mPlace = place;
    setAccessibleDescription(Readout());
    update();
}

bool Scope::event(QEvent* event) {
    return TakesArrowKey(*event) || QWidget::event(event);
}

void Scope::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::Current().scopeBackground);
    DrawGraticule(painter);
    const QRectF plot = Plot();
    const QSize pixels = (plot.size() * devicePixelRatioF()).toSize();
    if (mPicture != nullptr && !pixels.isEmpty()) {
        if (mTrace.size() != pixels) {
            mTrace = DrawTrace(pixels);
        }
        painter.drawImage(plot, mTrace);
        DrawPatches(painter);
        DrawProbes(painter);
        DrawReadout(painter);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

void Scope::DrawPatches(QPainter& painter) const {
    const Theme& theme = Theme::Current();
    const QPointF half(kPatchBox, kPatchBox);
    for (const ScopePatch& patch : mPatches) {
        const auto column = static_cast<int>(std::lround(patch.area.center().x()));
        const auto due = PlacesOf(patch.due, column);
        const auto found = PlacesOf(patch.found, column);
        for (std::size_t i = 0; i < due.size(); ++i) {
            painter.setPen(QPen(theme.scopeText, 1));
            painter.drawRect(QRectF(due[i] - half, due[i] + half));
            if (patch.isOff) {
                painter.setPen(QPen(theme.scopeFault, 1.5));
                painter.drawLine(due[i], found[i]);
                painter.drawEllipse(found[i], kPatchBox - 1, kPatchBox - 1);
            }
        }
    }
}

void Scope::DrawProbes(QPainter& painter) const {
    painter.setPen(Theme::Current().scopeText);
    for (std::size_t i = 0; i < mProbes.size(); ++i) {
        for (const QPointF place : PlacesOf(mPicture->At(mProbes[i].x(), mProbes[i].y()), mProbes[i].x())) {
            painter.drawEllipse(place, kProbeRing, kProbeRing);
            painter.drawText(place + QPointF(kProbeRing + 2, -kProbeRing), QString::number(i + 1));
        }
    }
}

void Scope::DrawReadout(QPainter& painter) const {
    const QString text = Readout();
    if (text.isEmpty()) {
        return;
    }
    const QRectF plot = Plot();
    painter.setPen(QPen(Theme::Current().scopeText, 1, Qt::DotLine));
    painter.drawLine(QPointF(plot.left(), mPlace->y()), QPointF(plot.right(), mPlace->y()));
    painter.drawLine(QPointF(mPlace->x(), plot.top()), QPointF(mPlace->x(), plot.bottom()));
    // In the corner that is farther away, so that it hides nothing of what is pointed at.
    const bool isLow = mPlace->y() > plot.center().y();
    QRectF box =
        fontMetrics().boundingRect(text).adjusted(-kReadoutPadding, -kReadoutPadding, kReadoutPadding, kReadoutPadding);
    box.moveTopLeft(QPointF(plot.left() + 1, isLow ? plot.top() + 1 : plot.bottom() - box.height() - 1));
    painter.fillRect(box, Theme::Current().scopeBackground);
    painter.setPen(Theme::Current().scopeText);
    painter.drawText(box, Qt::AlignCenter, text);
}

void Scope::resizeEvent(QResizeEvent* event) {
    mTrace = {};
    QWidget::resizeEvent(event);
}

void Scope::mouseMoveEvent(QMouseEvent* event) {
    PointAt(event->position());
}

void Scope::leaveEvent(QEvent* event) {
    PointAt(std::nullopt);
    QWidget::leaveEvent(event);
}

void Scope::keyPressEvent(QKeyEvent* event) {
    const auto step = ArrowStep(*event);
    if (!step) {
        QWidget::keyPressEvent(event);
        return;
    }
    const QRectF plot = Plot();
    const QPointF to = mPlace.value_or(plot.center()) + *step;
    PointAt(QPointF(std::clamp(to.x(), plot.left(), plot.right()), std::clamp(to.y(), plot.top(), plot.bottom())));
}

void Scope::focusOutEvent(QFocusEvent* event) {
    PointAt(std::nullopt);
    QWidget::focusOutEvent(event);
}

}  // namespace studio
