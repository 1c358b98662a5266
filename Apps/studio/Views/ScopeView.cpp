#include "Apps/studio/Views/ScopeView.h"

#include "Apps/studio/Window/Theme.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <vector>

namespace studio {

namespace {

constexpr double kHighest = 1.12;  // luma at the top
constexpr double kLowest = -0.12;
constexpr int kMarkStep = 10;  // percent
constexpr int kNumberStep = 20;
constexpr double kReach = 3;    // points; the beam ends there
constexpr double kGlow = 0.75;  // points from a trace's middle to where it is half as bright

// The beam's brightness at a distance from the middle of its line, in points.
float Beam(double distance) {
    return static_cast<float>(std::exp2(-(distance * distance) / (kGlow * kGlow)));
}

QRgb BeamColour(float brightness) {
    const auto part = [](float value) { return static_cast<int>(255 * std::clamp(value, 0.0F, 1.0F)); };
    // Towards white where it is brightest. Premultiplied, so that it adds up with the graticule.
    const float core = std::max(0.0F, brightness - 0.75F) * 2.4F;
    return qRgba(part(brightness * 0.42F + core * 0.5F), part(brightness * 0.95F),
                 part(brightness * 0.62F + core * 0.3F), part(brightness));
}

}  // namespace

ScopeView::ScopeView(QWidget* parent) : QWidget(parent) {
    setObjectName("scope");
    setAccessibleName(tr("Waveform monitor"));
    setAccessibleDescription(tr("Luma over the width of the picture, in percent."));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ScopeView::SetPicture(std::shared_ptr<const CardPicture> picture) {
    mPicture = std::move(picture);
    mTrace = {};
    if (mPicture != nullptr) {
        setAccessibleDescription(
            tr("Luma over the width of the picture, in percent, %1.").arg(NameOf(mPicture->ShownMatrix())));
    }
    update();
}

QRectF ScopeView::Plot() const {
    const int numbers = fontMetrics().horizontalAdvance("100") + 14;
    return QRectF(rect()).adjusted(numbers, 8, -10, -8);
}

double ScopeView::Y(double luma) const {
    const QRectF plot = Plot();
    return plot.top() + (kHighest - luma) / (kHighest - kLowest) * plot.height();
}

void ScopeView::resizeEvent(QResizeEvent* event) {
    mTrace = {};
    QWidget::resizeEvent(event);
}

void ScopeView::DrawGraticule(QPainter& painter) const {
    const Theme& theme = Theme::Current();
    const QRectF plot = Plot();
    for (int percent = -kMarkStep; percent <= 110; percent += kMarkStep) {
        const double y = std::round(Y(percent / 100.0)) + 0.5;
        const bool isEnd = percent == 0 || percent == 100;
        painter.setPen(QPen(isEnd ? theme.scopeStrong : theme.scopeGrid, 1));
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        if (percent % kNumberStep == 0) {
            painter.setPen(isEnd ? theme.scopeStrong : theme.scopeNumber);
            painter.drawText(QRectF(0, y - 10, plot.left() - 6, 20), Qt::AlignRight | Qt::AlignVCenter,
                             percent < 0 ? QString("\u2212%1").arg(-percent) : QString::number(percent));
        }
    }
}

// A column of the plot takes the columns of the picture that lie under it. The more pixels share a value, the
// brighter it is, on a scale that leaves a single line of the picture visible.
QImage ScopeView::DrawTrace(QSize pixels) const {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const double ratio = devicePixelRatioF();
    const auto reach = static_cast<int>(std::ceil(kReach * ratio));
    std::vector<float> brightness(static_cast<std::size_t>(pixels.height()));
    for (int x = 0; x < pixels.width(); ++x) {
        std::ranges::fill(brightness, 0.0F);
        const int first = x * mPicture->Width() / pixels.width();
        const int last = std::max(first + 1, (x + 1) * mPicture->Width() / pixels.width());
        const double all = static_cast<double>(last - first) * mPicture->Height();
        for (int column = first; column < last; ++column) {
            for (const LumaCount& count : mPicture->LumaOf(column)) {
                const double y = (kHighest - static_cast<double>(count.luma)) / (kHighest - kLowest) * pixels.height();
                const auto share = static_cast<float>(std::pow(count.pixels / all, 0.4));
                const int from = std::max(0, static_cast<int>(y) - reach);
                const int to = std::min(pixels.height() - 1, static_cast<int>(y) + reach);
                for (int line = from; line <= to; ++line) {
                    brightness[static_cast<std::size_t>(line)] += 1.15F * share * Beam((line + 0.5 - y) / ratio);
                }
            }
        }
        for (int line = 0; line < pixels.height(); ++line) {
            image.setPixel(x, line, BeamColour(std::min(1.0F, brightness[static_cast<std::size_t>(line)])));
        }
    }
    return image;
}

void ScopeView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::Current().scopeBackground);
    DrawGraticule(painter);
    const QRectF plot = Plot();
    const QSize pixels = (plot.size() * devicePixelRatioF()).toSize();
    if (mPicture == nullptr || pixels.isEmpty()) {
        return;
    }
    if (mTrace.size() != pixels) {
        mTrace = DrawTrace(pixels);
    }
    painter.drawImage(plot, mTrace);
    painter.setPen(Theme::Current().scopeNumber);
    painter.drawText(plot.adjusted(0, 0, -2, 0), Qt::AlignRight | Qt::AlignTop, NameOf(mPicture->ShownMatrix()));
}

}  // namespace studio
