#include "Apps/lineup/Overview/OverviewDrawing.h"

#include <lineup/Level.h>
#include <lineup/TimeAxis.h>
#include "Apps/lineup/Overview/CairoColour.h"
#include "Apps/lineup/Overview/LaneDrawing.h"
#include "Apps/lineup/Overview/LevelScale.h"
#include "Host/Interface/Core/Numeric.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

using lineup::NiceTimeStep;
using lineup::TimeLabel;
using zelmediatypes::TickTime;

namespace cli {

namespace {

// In units.
constexpr double kTitleSize = 19;
constexpr double kDetailSize = 13;
constexpr double kNameSize = 15;
constexpr double kTimeSize = 12.5;
constexpr double kLevelSize = 11;
constexpr double kTitleY = 24;
constexpr double kDetailY = 47;
constexpr double kLevelHeadingY = 68;
constexpr double kLevelSpacing = 12;  // from mark to mark at the least
constexpr double kTimeSpacing = 22;   // from label to label at the least
constexpr double kTimeY = 20;         // below the lowest lane
constexpr double kGridLine = 1;
constexpr double kCorner = 4;

class OverviewPen {
public:
    OverviewPen(cairo_t* context, const lineup::WaveformOverview& overview, const OverviewHeading& heading,
                const OverviewLayout& layout, const OverviewTheme& theme)
        : mContext(context),
          mOverview(&overview),
          mHeading(&heading),
          mLayout(&layout),
          mTheme(&theme),
          mScale(LevelScale::For(overview)),
          mUnit(layout.Unit()),
          mLabels(context) {}

    std::vector<Label> Draw() {
        SetColour(mContext, mTheme->background);
        cairo_paint(mContext);
        DrawHeading();
        for (int lane = 0; lane < mLayout->Lanes(); ++lane) {
            DrawPanel(mLayout->Lane(lane));
        }
        DrawTimes();
        for (int lane = 0; lane < mLayout->Lanes(); ++lane) {
            DrawLane(lane);
        }
        return mLabels.Labels();
    }

private:
    void DrawHeading() {
        const double room = mLayout->Width() - 2 * mLayout->Left();
        mLabels.Draw(mHeading->title, {kTitleSize * mUnit, mTheme->title, true}, Anchor::kLeft, mLayout->Left(),
                     kTitleY * mUnit, room);
        mLabels.Draw(mHeading->detail, {kDetailSize * mUnit, mTheme->text}, Anchor::kLeft, mLayout->Left(),
                     kDetailY * mUnit, room);
        mLabels.Draw("dBFS", {kLevelSize * mUnit, mTheme->text}, Anchor::kRight, mLayout->LevelLabelsRight(),
                     kLevelHeadingY * mUnit, room);
    }

    void DrawPanel(const Rectangle& lane) {
        const double radius = std::min(kCorner * mUnit, lane.height / 2);
        const double right = lane.x + lane.width;
        const double bottom = lane.y + lane.height;
        constexpr double kQuarter = std::numbers::pi / 2;
        cairo_new_sub_path(mContext);
        cairo_arc(mContext, right - radius, lane.y + radius, radius, -kQuarter, 0);
        cairo_arc(mContext, right - radius, bottom - radius, radius, 0, kQuarter);
        cairo_arc(mContext, lane.x + radius, bottom - radius, radius, kQuarter, 2 * kQuarter);
        cairo_arc(mContext, lane.x + radius, lane.y + radius, radius, 2 * kQuarter, 3 * kQuarter);
        cairo_close_path(mContext);
        SetColour(mContext, mTheme->lane);
        cairo_fill(mContext);
    }

    void Line(double x, double y, double width, double height) {
        SetColour(mContext, mTheme->grid);
        cairo_rectangle(mContext, x, y, width, height);
        cairo_fill(mContext);
    }

    // The first step is tried that its own labels have room for; longer steps never have longer labels.
    [[nodiscard]] TickTime TimeStep(TickTime start, TickTime end, TickTime furthest, const TextStyle& style) {
        const double ticksPerPixel = static_cast<double>(mOverview->span.length.Ticks()) / mLayout->PlotWidth();
        TickTime step = NiceTimeStep(TickTime(1));
        for (;;) {
            const double widest = std::max(mLabels.Width(TimeLabel(FirstMark(start, step), step, furthest), style),
                                           mLabels.Width(TimeLabel(LastMark(end, step), step, furthest), style));
            const double room = (widest + kTimeSpacing * mUnit) * ticksPerPixel;
            if (static_cast<double>(step.Ticks()) >= room) {
                return step;
            }
            step = NiceTimeStep(TickTime(step.Ticks() + 1));
        }
    }
    [[nodiscard]] static TickTime FirstMark(TickTime start, TickTime step) {
        return TickTime(-zelcore::numeric::FloorDivide(-start.Ticks(), step.Ticks()) * step.Ticks());
    }
    [[nodiscard]] static TickTime LastMark(TickTime end, TickTime step) {
        return TickTime(zelcore::numeric::FloorDivide(end.Ticks(), step.Ticks()) * step.Ticks());
    }

    void DrawTimes() {
        const TextStyle style{kTimeSize * mUnit, mTheme->text};
        const TickTime start = zelmediatypes::FrameRateFromHz(mHeading->sampleRateHz) * mOverview->span.startSample;
        const TickTime end = start + mOverview->span.length;
        const TickTime furthest(std::max(std::abs(start.Ticks()), std::abs(end.Ticks())));
        const TickTime step = TimeStep(start, end, furthest, style);
        const Rectangle lowest = mLayout->Lane(mLayout->Lanes() - 1);
        for (TickTime mark = FirstMark(start, step); mark <= end; mark += step) {
            const double share =
                static_cast<double>((mark - start).Ticks()) / static_cast<double>(mOverview->span.length.Ticks());
            const double x = lowest.x + share * lowest.width;
            for (int lane = 0; lane < mLayout->Lanes(); ++lane) {
                const Rectangle panel = mLayout->Lane(lane);
                Line(x - kGridLine * mUnit / 2, panel.y, kGridLine * mUnit, panel.height);
            }
            const std::string text = TimeLabel(mark, step, furthest);
            if (x + mLabels.Width(text, style) / 2 <= mLayout->Width()) {
                mLabels.Draw(text, style, Anchor::kCentre, x, lowest.y + lowest.height + kTimeY * mUnit, lowest.width);
            }
        }
    }

    void DrawLevels(const Rectangle& lane) {
        const double centre = lane.y + lane.height / 2;
        const TextStyle style{kLevelSize * mUnit, mTheme->text};
        Line(lane.x, centre - kGridLine * mUnit / 2, lane.width, kGridLine * mUnit);
        for (const int levelDb : mScale.MarksDb(lane.height / 2, kLevelSpacing * mUnit)) {
            const double offset = lineup::GainFromDb(levelDb) / mScale.top * lane.height / 2;
            for (const double y : {centre - offset, centre + offset}) {
                Line(lane.x, y - kGridLine * mUnit / 2, lane.width, kGridLine * mUnit);
                mLabels.Draw(levelDb == 0 ? "0" : fmt::format("\u2212{}", -levelDb), style, Anchor::kRight,
                             mLayout->LevelLabelsRight(), y, lane.x);
            }
        }
    }

    void DrawLane(int index) {
        const Rectangle lane = mLayout->Lane(index);
        const auto channel = static_cast<std::size_t>(index);
        const Rgb colour = mTheme->Waveform(channel);
        DrawLevels(lane);
        DrawWaveform(mContext, mOverview->channels[channel],
                     {lane, mScale, colour, mTheme->noData, mTheme->bandOpacity, mUnit});
        mLabels.Draw(mOverview->channels[channel].name, {kNameSize * mUnit, colour, true}, Anchor::kLeft,
                     mLayout->Left(), lane.y + lane.height / 2, lane.x);
    }

    cairo_t* mContext;
    const lineup::WaveformOverview* mOverview;
    const OverviewHeading* mHeading;
    const OverviewLayout* mLayout;
    const OverviewTheme* mTheme;
    LevelScale mScale;
    double mUnit;
    LabelPainter mLabels;
};

}  // namespace

std::vector<Label> DrawOverview(cairo_t* context, const lineup::WaveformOverview& overview,
                                const OverviewHeading& heading, const OverviewLayout& layout,
                                const OverviewTheme& theme) {
    return OverviewPen(context, overview, heading, layout, theme).Draw();
}

}  // namespace cli
