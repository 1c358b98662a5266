#include "Apps/studio/Views/LanePainter.h"

#include "Apps/studio/Document/ClipWords.h"
#include "Apps/studio/Window/Theme.h"
#include "Host/Interface/Core/Numeric.h"
#include "Host/Lineup/TimeAxis.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

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

    QPixmap pixmap(mSize * mPixelRatio);
    pixmap.setDevicePixelRatio(mPixelRatio);
    pixmap.fill(Theme::Current().window);
    QPainter painter(&pixmap);
    painter.setFont(mFont);
    const auto channels = ShownChannels(mClip);
    const double room = mSize.height() - kRulerHeight;
    const double height = room / static_cast<double>(channels.size());
    for (std::size_t place = 0; place < channels.size(); ++place) {
        const double top = std::round(kRulerHeight + height * static_cast<double>(place));
        const double bottom = std::round(kRulerHeight + height * static_cast<double>(place + 1)) - kLaneGap;
        painter.fillRect(QRectF(0, top, mSize.width(), bottom - top), Theme::Current().lane);
        DrawLane(painter, {static_cast<double>(mGutter), top, static_cast<double>(mSpan.Width()), bottom - top},
                 channels[place].index, channels[place].name);
    }
    DrawRuler(painter);
    return pixmap;
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

void LanePainter::DrawLane(QPainter& painter, const QRectF& lane, std::size_t channel, const QString& name) const {
    const Theme& theme = Theme::Current();
    const QColor colour = theme.Waveform(channel);
    const double centre = lane.center().y();
    const auto y = [&](float amplitude) {
        return centre - static_cast<double>(amplitude) / mScale * lane.height() / 2;
    };
    painter.setPen(theme.laneGrid);
    painter.drawLine(QPointF(lane.left(), std::round(centre) + 0.5), QPointF(lane.right(), std::round(centre) + 0.5));
    QFont bold = mFont;
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(colour);
    painter.drawText(QRectF(0, lane.top(), mGutter - 8, lane.height()), Qt::AlignRight | Qt::AlignVCenter, name);
    painter.setFont(mFont);

    const lineup::ChannelOverview& values = mOverview.channels[channel];
    const double column = lane.width() / static_cast<double>(values.maxima.size());
    QColor band = colour;
    band.setAlpha(kBandOpacity);
    QPainterPath traced;
    bool penDown = false;
    for (std::size_t i = 0; i < values.maxima.size(); ++i) {
        const float top = values.maxima[i];
        const float bottom = values.minima[i];
        const double x = lane.left() + static_cast<double>(i) * column;
        if (std::isnan(top) || std::isnan(bottom)) {
            penDown = false;  // the plug-in wrote nothing here
            continue;
        }
        if (top == bottom) {
            const QPointF point(x, y(top));
            penDown ? traced.lineTo(point) : traced.moveTo(point);
            penDown = true;
            continue;
        }
        penDown = false;
        const double high = y(top);
        const double low = y(bottom);
        painter.fillRect(QRectF(x, high, column, low - high), band);
        painter.fillRect(QRectF(x, high, column, std::min(kLeastLine, low - high)), colour);
        painter.fillRect(QRectF(x, low - kLeastLine, column, std::min(kLeastLine, low - high)), colour);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, kLeastLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(traced);
    painter.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace studio
