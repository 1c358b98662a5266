#include "Apps/studio/Check/RecordingLanes.h"

#include "Apps/lanes/LevelScale.h"
#include "Apps/studio/Check/CheckWords.h"
#include "Apps/studio/Window/Theme.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

using zelmediatypes::kTicksPerSecond;
using zelmediatypes::TickTime;

namespace studio {

namespace {

constexpr double kUsualRate = 48000;

const lineup::SoundLanes& LanesOf(const lineup::CheckReport& report) {
    static const lineup::SoundLanes kNone;
    return report.sound ? report.sound->lanes : kNone;
}

// The highest points of each column of pixels; 0 outside.
class Columns {
public:
    Columns(const lineup::CheckReport& report, const LaneSpan& span)
        : mStart(LanesOf(report).start),
          mStep(LanesOf(report).step),
          mFrom(static_cast<double>(span.Start()) / SoundRate(report)),
          mLength(span.Visible() / SoundRate(report)),
          mCount(static_cast<std::size_t>(std::max(1, span.Width()))) {}

    [[nodiscard]] std::vector<float> Of(std::span<const float> points) const {
        std::vector<float> columns(mCount, 0);
        for (std::size_t i = 0; i < mCount; ++i) {
            const double first = Point(i);
            const auto from = static_cast<std::int64_t>(std::floor(first));
            const auto to = std::max(from + 1, static_cast<std::int64_t>(std::floor(Point(i + 1))));
            for (std::int64_t p = std::max<std::int64_t>(0, from); p < std::min(to, std::ssize(points)); ++p) {
                columns[i] = std::max(columns[i], std::abs(points[static_cast<std::size_t>(p)]));
            }
        }
        return columns;
    }

private:
    // Which point a column begins with, with fractions.
    [[nodiscard]] double Point(std::size_t column) const {
        const double seconds = mFrom + mLength * static_cast<double>(column) / static_cast<double>(mCount);
        return (seconds - mStart) / mStep;
    }

    double mStart;
    double mStep;
    double mFrom;
    double mLength;
    std::size_t mCount;
};

lineup::WaveformOverview Overview(const lineup::CheckReport& report, const LaneSpan& span) {
    const double rate = SoundRate(report);
    const auto ticks = [rate](double samples) {
        return TickTime(std::llround(samples / rate * static_cast<double>(kTicksPerSecond)));
    };
    lineup::WaveformOverview overview{
        .span = {.startSample = span.Start(), .length = ticks(span.Visible()), .columns = std::max(1, span.Width())},
        .start = ticks(static_cast<double>(span.Start())),
        .columnLength = {},
        .showsWave = false,
        .channels = {}};
    const Columns columns(report, span);
    for (std::size_t input = 0; input < LanesOf(report).found.size(); ++input) {
        lineup::ChannelOverview channel{
            InputName(report, input).toStdString(), columns.Of(LanesOf(report).found[input]), {}};
        channel.minima.resize(channel.maxima.size());
        std::ranges::transform(channel.maxima, channel.minima.begin(), std::negate());
        overview.channels.push_back(std::move(channel));
    }
    return overview;
}

// The outline of each stretch that is not silent, round the lane's centre line.
void DrawExpected(QPainter& painter, const std::vector<float>& columns, const QRectF& lane) {
    const lanes::LevelScale scale = lanes::LevelScale::Decibels();
    const auto x = [&](std::size_t column) {
        return std::round(lane.x() + static_cast<double>(column) * lane.width() / static_cast<double>(columns.size()));
    };
    for (std::size_t begin = 0; begin < columns.size();) {
        const bool isSilent = columns[begin] <= 0;
        std::size_t end = begin;
        QPolygonF top;
        QPolygonF bottom;
        for (; end < columns.size() && (columns[end] <= 0) == isSilent; ++end) {
            const double height = std::round(scale.Height(static_cast<double>(columns[end])) * lane.height() / 2);
            for (const double at : {x(end), x(end + 1)}) {
                top << QPointF(at, lane.center().y() - height);
                bottom.prepend(QPointF(at, lane.center().y() + height));
            }
        }
        if (!isSilent) {
            painter.drawPolygon(top + bottom);
        }
        begin = end;
    }
}

void DrawFaultPlaces(QPainter& painter, const lineup::CheckReport& report, const LaneSpan& span, const QRectF& lanes) {
    painter.setPen(QPen(Theme::Current().error, 1, Qt::DashLine));
    for (const lineup::CheckFault& fault : report.faults) {
        const double x = fault.at ? span.X(std::llround(*fault.at * SoundRate(report))) : -1;
        if (x >= 0 && x <= span.Width()) {
            const double at = std::round(lanes.left() + x) + 0.5;
            painter.drawLine(QPointF(at, lanes.top()), QPointF(at, lanes.bottom()));
        }
    }
}

}  // namespace

double SoundRate(const lineup::CheckReport& report) {
    return report.sound ? report.sound->sampleRate.value_or(kUsualRate) : kUsualRate;
}

std::int64_t SoundSamples(const lineup::CheckReport& report) {
    const lineup::SoundLanes& lanes = LanesOf(report);
    const std::size_t points = lanes.found.empty() ? 0 : lanes.found.front().size();
    const double seconds = points == 0 || lanes.step <= 0 ? 0 : lanes.start + lanes.step * static_cast<double>(points);
    return std::llround(seconds * SoundRate(report));
}

std::vector<float> LevelsAt(const lineup::CheckReport& report, double seconds) {
    std::vector<float> levels;
    const lineup::SoundLanes& lanes = LanesOf(report);
    const double point = lanes.step > 0 ? std::floor((seconds - lanes.start) / lanes.step) : -1;
    for (const std::vector<float>& found : lanes.found) {
        const bool isWithin = point >= 0 && point < static_cast<double>(found.size());
        levels.push_back(isWithin ? std::abs(found[static_cast<std::size_t>(point)]) : 0);
    }
    return levels;
}

QPixmap DrawRecording(const lineup::CheckReport& report, const std::vector<int>& inputs, const LaneSpan& span,
                      const LaneView& view) {
    const std::size_t count = LanesOf(report).found.size();
    std::vector<std::size_t> order(count);
    std::iota(order.begin(), order.end(), std::size_t{0});
    QPixmap pixmap = DrawOverview(Overview(report, span), order, span, view);
    const std::vector<QRectF> rects = LaneRects(span, view, count);
    const Columns columns(report, span);
    QPainter painter(&pixmap);
    for (std::size_t input = 0; input < count; ++input) {
        painter.setPen(QPen(Theme::Current().text, 1));
        if (input < LanesOf(report).expected.size()) {
            DrawExpected(painter, columns.Of(LanesOf(report).expected[input]), rects[input]);
        }
        if (std::ranges::find(inputs, static_cast<int>(input)) != inputs.end()) {
            painter.setPen(QPen(Theme::Current().error, 1.5));
            painter.drawRect(rects[input].adjusted(0.5, 0.5, -0.5, -0.5));
        }
    }
    if (!rects.empty()) {
        DrawFaultPlaces(painter, report, span, rects.front().united(rects.back()));
    }
    return pixmap;
}

}  // namespace studio
