#include "Apps/studio/Views/LanesView.h"

#include "Apps/studio/Document/ProblemWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

namespace studio {

namespace {

constexpr double kKeyZoom = 2;
constexpr double kNotchZoom = 1.25;
constexpr int kNotch = 120;  // eighths of a degree
constexpr int kScrollSteps = 1 << 20;
constexpr double kPage = 0.8;
constexpr int kUsualLane = 40;
constexpr int kLeastLane = 24;
constexpr int kMostLanesHeight = 200;  // of a clip with very many channels, at the least
constexpr int kHandle = 5;             // half the width of the playhead's

}  // namespace

LanesView::LanesView(QWidget* parent) : QWidget(parent), mScroll(new QScrollBar(Qt::Horizontal, this)) {
    setObjectName("lanes");
    setAccessibleName(tr("Waveform"));
    setAccessibleDescription(tr("The clip's sound over time, a lane a channel. Click to go to a time."));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
    mScroll->setAccessibleName(tr("Scroll the waveform"));
    mScroll->setFocusPolicy(Qt::NoFocus);
    connect(mScroll, &QScrollBar::valueChanged, this, [this](int value) {
        const double hidden = static_cast<double>(mSpan.Length()) - mSpan.Visible();
        mSpan.ScrollTo(std::llround(hidden * value / std::max(1, mScroll->maximum())));
        SpanChanged();
    });
}

int LanesView::Gutter() const {
    return fontMetrics().horizontalAdvance("LFE \u221218") + 24;
}

int LanesView::HeightFor(int laneHeight) const {
    return LaneView::kRulerHeight + mNumLanes * laneHeight + mScroll->sizeHint().height();
}

QSize LanesView::sizeHint() const {
    return {800, HeightFor(kUsualLane)};
}

QSize LanesView::minimumSizeHint() const {
    return {300, HeightFor(std::min(kLeastLane, kMostLanesHeight / mNumLanes))};
}

int LanesView::LanesHeight() const {
    return height() - (mSpan.ShowsAll() ? 0 : mScroll->sizeHint().height() + 2);
}

void LanesView::SetClip(std::shared_ptr<const lineup::Clip> clip, std::int64_t lengthSamples) {
    const int lanes = clip->NumChannels();
    SetDrawing(
        [clip = std::move(clip)](const LaneSpan& span, const LaneView& view) { return DrawClip(*clip, span, view); },
        lanes, lengthSamples);
}

void LanesView::SetDrawing(Draw draw, int lanes, std::int64_t lengthSamples) {
    const bool isOther = !mDraw || lengthSamples != mSpan.Length();
    mDraw = std::move(draw);
    mNumLanes = std::max(1, lanes);
    if (isOther) {
        mSpan.SetClip(lengthSamples);
    }
    updateGeometry();
    SpanChanged();
}

QRect LanesView::PlayheadRect() const {
    return {static_cast<int>(std::lround(X(mPlayhead))) - kHandle - 1, 0, 2 * kHandle + 3, height()};
}

void LanesView::SetPlayhead(std::int64_t sample, bool follow) {
    const QRect before = PlayheadRect();
    mPlayhead = sample;
    const double x = mSpan.X(sample);
    if (follow && (x < 0 || x > mSpan.Width())) {
        mSpan.ScrollTo(sample);
        SpanChanged();
        return;
    }
    if (PlayheadRect() != before) {
        update(before);
        update(PlayheadRect());
    }
}

double LanesView::ZoomCentre() const {
    const double x = mSpan.X(mPlayhead);
    return x >= 0 && x <= mSpan.Width() ? x : mSpan.Width() / 2.0;
}

void LanesView::ZoomAbout(double factor, double x) {
    mSpan.Zoom(factor, x);
    SpanChanged();
}

void LanesView::ZoomIn() {
    ZoomAbout(kKeyZoom, ZoomCentre());
}

void LanesView::ZoomOut() {
    ZoomAbout(1 / kKeyZoom, ZoomCentre());
}

void LanesView::ShowAll() {
    mSpan.ShowAll();
    SpanChanged();
}

void LanesView::ScrollPages(int pages) {
    mSpan.ScrollTo(mSpan.Start() + std::llround(pages * kPage * mSpan.Visible()));
    SpanChanged();
}

void LanesView::SpanChanged() {
    const double share = mSpan.Visible() / static_cast<double>(mSpan.Length());
    const double hidden = static_cast<double>(mSpan.Length()) - mSpan.Visible();
    const QSignalBlocker quiet(mScroll);
    mScroll->setVisible(!mSpan.ShowsAll());
    // A scroll bar's thumb is pageStep of maximum + pageStep.
    mScroll->setRange(0, static_cast<int>(kScrollSteps * (1 - share)));
    mScroll->setPageStep(std::max(1, static_cast<int>(kScrollSteps * share)));
    mScroll->setSingleStep(std::max(1, mScroll->pageStep() / 10));
    mScroll->setValue(
        hidden <= 0 ? 0 : static_cast<int>(mScroll->maximum() * (static_cast<double>(mSpan.Start()) / hidden)));
    mLanes = {};
    update();
}

void LanesView::resizeEvent(QResizeEvent* event) {
    const int bar = mScroll->sizeHint().height();
    mScroll->setGeometry(Gutter(), height() - bar, width() - Gutter(), bar);
    mSpan.SetWidth(width() - Gutter() - kHandle - 1);
    SpanChanged();
    QWidget::resizeEvent(event);
}

void LanesView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        mLanes = {};
    }
    QWidget::changeEvent(event);
}

void LanesView::DrawAnew() {
    const QSize size(width(), LanesHeight());
    mProblem.clear();
    try {
        ++mRequests;
        mLanes = mDraw(mSpan, {size, Gutter(), devicePixelRatioF(), font()});
    } catch (const std::exception& error) {
        mProblem = ProblemWords(error);
        mLanes = QPixmap(size * devicePixelRatioF());
        mLanes.setDevicePixelRatio(devicePixelRatioF());
        mLanes.fill(Theme::Current().lane);
    }
}

void LanesView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Theme& theme = Theme::Current();
    if (!mDraw || height() < 2 * LaneView::kRulerHeight) {
        painter.fillRect(rect(), theme.window);
        return;
    }
    if (mLanes.isNull() || mLanes.devicePixelRatio() != devicePixelRatioF()) {
        DrawAnew();
    }
    const double ratio = mLanes.devicePixelRatio();
    const QRectF part = event->rect();
    const double bottom = mLanes.height() / ratio;
    painter.drawPixmap(part, mLanes, QRectF(part.topLeft() * ratio, part.size() * ratio));
    painter.fillRect(QRectF(0, bottom, width(), height() - bottom), theme.window);
    if (!mProblem.isEmpty()) {
        painter.setPen(theme.text);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, mProblem);
    }
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
    const double x = std::round(X(mPlayhead)) + 0.5;
    if (x >= Gutter()) {
        painter.setPen(QPen(theme.playhead, 1));
        painter.drawLine(QPointF(x, LaneView::kRulerHeight - 8), QPointF(x, bottom));
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.playhead);
        const double top = LaneView::kRulerHeight - 8;
        painter.drawPolygon(QPolygonF({{x - kHandle, top - 5}, {x + kHandle, top - 5}, {x, top + 3}}));
    }
}

void LanesView::wheelEvent(QWheelEvent* event) {
    const QPoint turned = event->angleDelta();
    const bool scrolls = event->modifiers().testFlag(Qt::ShiftModifier) || std::abs(turned.x()) > std::abs(turned.y());
    const int amount = std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    const double notches = static_cast<double>(amount) / kNotch;
    if (scrolls) {
        mSpan.ScrollTo(mSpan.Start() - std::llround(notches * mSpan.Visible() / 10));
        SpanChanged();
    } else {
        ZoomAbout(std::pow(kNotchZoom, notches), event->position().x() - Gutter());
    }
    event->accept();
}

void LanesView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Q_EMIT SeekWanted(mSpan.Sample(std::max(0.0, event->position().x() - Gutter())));
    }
}

void LanesView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        Q_EMIT SeekWanted(mSpan.Sample(std::max(0.0, event->position().x() - Gutter())));
    }
}

}  // namespace studio
