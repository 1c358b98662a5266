#include "Apps/lanes/LaneDrawing.h"

#include <lineup/Level.h>
#include "Apps/lanes/LevelScale.h"
#include "Apps/lanes/TimeMarks.h"
#include "Apps/lanes/Waveform.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace lanes {

namespace {

// In units.
constexpr double kTimeSpacing = 22;  // from text to text at the least
constexpr double kTick = 4;          // how far a tick reaches into the lane
constexpr double kTickSpacing = 3;   // from tick to tick at the least

class LanePen {
public:
    LanePen(const lineup::WaveformOverview& overview, const LaneSheet& sheet, const LaneColours& colours,
            const Measure& measure)
        : mOverview(&overview),
          mSheet(&sheet),
          mColours(&colours),
          mMeasure(&measure),
          mScale(LevelScale::For(overview)),
          mLine(std::max(1.0, std::round(sheet.unit))) {}

    Drawing Draw(const std::vector<std::size_t>& order) {
        AddBox({0, 0, mSheet->width, mSheet->height}, mColours->background);
        for (const Rectangle& lane : mSheet->lanes) {
            AddBox(lane, mColours->lane);
        }
        DrawTimes();
        AddLabel("dBFS", {mSheet->levelSize, mColours->text}, Anchor::Left, mSheet->levelUnitX, mSheet->levelUnitY);
        for (std::size_t i = 0; i < mSheet->lanes.size(); ++i) {
            DrawLane(mSheet->lanes[i], order[i]);
        }
        return std::move(mDrawing);
    }

private:
    void AddBox(const Rectangle& area, Rgb colour) { mDrawing.boxes.push_back({area, colour}); }
    void AddLabel(const std::string& text, const TextStyle& style, Anchor anchor, double x, double y) {
        mDrawing.labels.push_back(MakeLabel(*mMeasure, text, style, anchor, x, y, mSheet->width));
    }

    // A grid line about y or x, on whole pixels.
    void AddRow(double left, double y, double width) {
        AddBox({left, std::round(y - mLine / 2), std::round(width), mLine}, mColours->grid);
    }
    void AddColumn(double x, const Rectangle& lane) {
        AddBox({std::round(x - mLine / 2), lane.y, mLine, lane.height}, mColours->grid);
    }

    void DrawTimes() {
        const Rectangle& plot = mSheet->lanes.front();
        const TextStyle style{mSheet->timeSize, mColours->text};
        const double ticksPerPixel = static_cast<double>(mOverview->span.length.Ticks()) / plot.width;
        const auto room = [&](const std::string& text) {
            return ((*mMeasure)(text, style) + kTimeSpacing * mSheet->unit) * ticksPerPixel;
        };
        for (const TimeMark& mark : TimeMarks(mOverview->start, mOverview->span.length, room)) {
            const double x = plot.x + static_cast<double>((mark.time - mOverview->start).Ticks()) / ticksPerPixel;
            for (const Rectangle& lane : mSheet->lanes) {
                AddColumn(x, lane);
            }
            if (x + (*mMeasure)(mark.text, style) / 2 <= mSheet->width) {
                AddLabel(mark.text, style, Anchor::Centre, x, mSheet->timesY);
            }
        }
    }

    void DrawLevels(const Rectangle& lane) {
        const double half = lane.height / 2;
        const auto offset = [&](int levelDb) { return mScale.Height(lineup::GainFromDb(levelDb)) * half; };
        AddRow(lane.x, lane.Middle(), lane.width);
        for (const int levelDb : mScale.TicksDb(half, kTickSpacing * mSheet->unit)) {
            AddRow(lane.x, lane.Middle() - offset(levelDb), kTick * mSheet->unit);
            AddRow(lane.x, lane.Middle() + offset(levelDb), kTick * mSheet->unit);
        }
        for (const int levelDb : mScale.NamedDb(half, mSheet->levelSize)) {
            AddRow(lane.x, lane.Middle() - offset(levelDb), lane.width);
            AddRow(lane.x, lane.Middle() + offset(levelDb), lane.width);
            AddLabel(levelDb == 0 ? "0" : fmt::format("\u2212{}", -levelDb), {mSheet->levelSize, mColours->text},
                     Anchor::Right, mSheet->levelsRight, lane.Middle() - offset(levelDb));
        }
    }

    void DrawLane(const Rectangle& lane, std::size_t channel) {
        const lineup::ChannelOverview& values = mOverview->channels[channel];
        DrawLevels(lane);
        AddWaveform(values,
                    {lane, mScale, mColours->Waveform(channel), mColours->noData, mSheet->unit, mOverview->showsWave},
                    mDrawing.boxes);
        AddLabel(values.name, {mSheet->nameSize, mColours->Waveform(channel), true}, Anchor::Left, mSheet->namesX,
                 lane.Middle());
    }

    const lineup::WaveformOverview* mOverview;
    const LaneSheet* mSheet;
    const LaneColours* mColours;
    const Measure* mMeasure;
    LevelScale mScale;
    double mLine;
    Drawing mDrawing;
};

}  // namespace

Drawing DrawLanes(const lineup::WaveformOverview& overview, const std::vector<std::size_t>& order,
                  const LaneSheet& sheet, const LaneColours& colours, const Measure& measure) {
    return LanePen(overview, sheet, colours, measure).Draw(order);
}

}  // namespace lanes
