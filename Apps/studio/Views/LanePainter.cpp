#include "Apps/studio/Views/LanePainter.h"

#include <lineup/TimeAxis.h>
#include "Apps/studio/Views/BandFill.h"
#include "Apps/studio/Window/Theme.h"
#include "Host/Interface/Core/Numeric.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace studio {

namespace {

constexpr double kHeadroom = 1.25;
constexpr double kQuietestPeak = 1e-6;
constexpr int kLaneGap = 3;
constexpr int kBandOpacity = 120;
constexpr double kLeastLine = 1.5;
constexpr int kLabelRoom = 26;  // beside a time, in points

}  // namespace

LanePainter::LanePainter(const lineup::Clip& clip, const LaneSpan& span, QSize size, int gutter, double pixelRatio,
                         const QFont& font)
    : mClip(clip), mSpan(span), mSize(size), mGutter(gutter), mPixelRatio(pixelRatio), mFont(font) {}

// One scale for all lanes, a little above the loudest: line-up levels are an eighth of full scale.
double LanePainter::Top() const {
    float peak = 0;
    for (const lineup::ChannelOverview& channel : mOverview.channels) {
        for (const auto* const values : {&channel.maxima, &channel.minima}) {
            for (const float value : *values) {
                peak = std::abs(value) > peak ? std::abs(value) : peak;  // not for what was not written
            }
        }
    }
    return peak > 0 ? std::max(static_cast<double>(peak), kQuietestPeak) * kHeadroom : 1;
}

QPixmap LanePainter::Draw() {
    const double seconds = mSpan.Visible() / static_cast<double>(mClip.SampleRate());
    const auto ticks = std::llround(seconds * static_cast<double>(kTicksPerSecond));
    const TickTime length(std::max<std::int64_t>(ticks, lineup::kShortestColumn.Ticks()));
    const auto columns =
        std::min<std::int64_t>({std::max(1L, std::lround(mSpan.Width() * mPixelRatio)), lineup::kMostOverviewColumns,
                                length.Ticks() / lineup::kShortestColumn.Ticks()});
    mOverview = lineup::ReadOverview(
        mClip, {.startSample = mSpan.Start(), .length = length, .columns = static_cast<int>(columns)});
    mScale = Top();

    QImage image(mSize * mPixelRatio, QImage::Format_RGB32);
    image.setDevicePixelRatio(mPixelRatio);
    image.fill(Theme::Current().window);
    const auto channels = ShownChannels(mClip);
    {
        QPainter painter(&image);
        for (std::size_t place = 0; place < channels.size(); ++place) {
            DrawGround(painter, Lane(place, channels.size()), channels[place]);
        }
    }
    for (std::size_t place = 0; place < channels.size(); ++place) {
        const QRectF lane = Lane(place, channels.size());
        DrawBands(image, lane, channels[place].index);
        DrawTrace(image, lane, channels[place].index);
    }
    QPainter painter(&image);
    painter.setFont(mFont);
    DrawRuler(painter);
    painter.end();
    return QPixmap::fromImage(std::move(image));
}

// The plot of the lane at `place` of `count`.
QRectF LanePainter::Lane(std::size_t place, std::size_t count) const {
    const double height = static_cast<double>(mSize.height() - kRulerHeight) / static_cast<double>(count);
    const double top = std::round(kRulerHeight + height * static_cast<double>(place));
    const double bottom = std::round(kRulerHeight + height * static_cast<double>(place + 1)) - kLaneGap;
    return {static_cast<double>(mGutter), top, static_cast<double>(mSpan.Width()), bottom - top};
}

double LanePainter::Y(const QRectF& lane, float amplitude) const {
    return lane.center().y() - static_cast<double>(amplitude) / mScale * lane.height() / 2;
}

void LanePainter::DrawRuler(QPainter& painter) const {
    const Theme& theme = Theme::Current();
    const double ticksPerSample = static_cast<double>(kTicksPerSecond) / static_cast<double>(mClip.SampleRate());
    const double ticksPerPoint = mSpan.SamplesPerPixel() * ticksPerSample;
    const TickTime start(std::llround(static_cast<double>(mSpan.Start()) * ticksPerSample));
    const TickTime end(start.Ticks() + std::llround(ticksPerPoint * mSpan.Width()));
    const QFontMetrics metrics(mFont);
    const auto label = [&](TickTime time, TickTime step) {
        return QString::fromStdString(lineup::TimeLabel(time, step, end));
    };
    TickTime step = lineup::NiceTimeStep(TickTime(1));
    while (static_cast<double>(step.Ticks()) <
           (metrics.horizontalAdvance(label(end, step)) + kLabelRoom) * ticksPerPoint) {
        step = lineup::NiceTimeStep(TickTime(step.Ticks() + 1));
    }
    const std::int64_t first = -zelcore::numeric::FloorDivide(-start.Ticks(), step.Ticks());
    for (TickTime mark(first * step.Ticks()); mark <= end; mark += step) {
        const double x = std::round(mGutter + static_cast<double>((mark - start).Ticks()) / ticksPerPoint) + 0.5;
        painter.setPen(theme.line);
        painter.drawLine(QPointF(x, kRulerHeight - 7), QPointF(x, kRulerHeight));
        painter.setPen(theme.dim);
        painter.drawText(QRectF(x + 4, 0, 200, kRulerHeight - 3), Qt::AlignLeft | Qt::AlignVCenter, label(mark, step));
        QColor line = theme.laneGrid;
        line.setAlpha(150);
        painter.setPen(line);
        painter.drawLine(QPointF(x, kRulerHeight), QPointF(x, mSize.height()));
    }
}

void LanePainter::DrawGround(QPainter& painter, const QRectF& lane, const ShownChannel& channel) const {
    const Theme& theme = Theme::Current();
    painter.fillRect(QRectF(0, lane.top(), mSize.width(), lane.height()), theme.lane);
    const double centre = std::round(lane.center().y()) + 0.5;
    painter.setPen(theme.laneGrid);
    painter.drawLine(QPointF(lane.left(), centre), QPointF(lane.right(), centre));
    QFont bold = mFont;
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(theme.Waveform(channel.index));
    painter.drawText(QRectF(0, lane.top(), mGutter - 8, lane.height()), Qt::AlignRight | Qt::AlignVCenter,
                     channel.name);
}

// Columns that the plug-in draws as a band; neighbours of one height at once. What it wrote nothing for compares as
// neither above nor below.
void LanePainter::DrawBands(QImage& image, const QRectF& lane, std::size_t channel) const {
    const lineup::ChannelOverview& values = mOverview.channels[channel];
    const std::size_t columns = values.maxima.size();
    const double column = lane.width() / static_cast<double>(columns);
    const auto pixel = [this](double points) { return static_cast<int>(std::lround(points * mPixelRatio)); };
    const BandStyle style{Theme::Current().Waveform(channel), kBandOpacity, std::max(1, pixel(kLeastLine))};
    QRect run;  // not drawn yet
    for (std::size_t i = 0; i < columns; ++i) {
        const auto [lowest, highest] = std::minmax(values.minima[i], values.maxima[i]);
        if (!(lowest < highest)) {
            continue;
        }
        const int left = pixel(lane.left() + static_cast<double>(i) * column);
        const int right = pixel(lane.left() + static_cast<double>(i + 1) * column);
        const int top = pixel(Y(lane, highest));
        const QRect band(left, top, right - left, pixel(Y(lane, lowest)) - top);
        if (band.top() == run.top() && band.height() == run.height() && band.left() == run.left() + run.width()) {
            run.setWidth(run.width() + band.width());
        } else {
            FillBand(image, run, style);
            run = band;
        }
    }
    FillBand(image, run, style);
}

// Columns where the plug-in draws the wave itself, joined by a line, a column of pixels after the other. As one line of
// Qt's a thousand cycles took a second.
void LanePainter::DrawTrace(QImage& image, const QRectF& lane, std::size_t channel) const {
    const lineup::ChannelOverview& values = mOverview.channels[channel];
    const double column = lane.width() / static_cast<double>(values.maxima.size()) * mPixelRatio;
    const double half = kLeastLine * mPixelRatio / 2;
    const QColor colour = Theme::Current().Waveform(channel);
    for (std::size_t i = 0; i + 1 < values.maxima.size(); ++i) {
        if (values.maxima[i] != values.minima[i] || values.maxima[i + 1] != values.minima[i + 1]) {
            continue;  // a band, or nothing at all
        }
        const double left = lane.left() * mPixelRatio + static_cast<double>(i) * column;
        const double from = Y(lane, values.maxima[i]) * mPixelRatio;
        const double slope = (Y(lane, values.maxima[i + 1]) * mPixelRatio - from) / column;
        for (int x = static_cast<int>(std::floor(left)); x < left + column; ++x) {
            const double begin = from + slope * (std::max<double>(x, left) - left);
            const double end = from + slope * (std::min(x + 1.0, left + column) - left);
            FillColumn(image, x, std::min(begin, end) - half, std::max(begin, end) + half, colour);
        }
    }
}

}  // namespace studio
