#include "Apps/lineup/Overview/OverviewSheet.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

using lanes::Anchor;

namespace cli {

namespace {

// In units.
constexpr double kLeft = 20;        // of the picture's edge to the names
constexpr double kPlotLeft = 104;   // names and levels fit in front of it
constexpr double kRight = 28;       // half a time fits behind the plot
constexpr double kTop = 76;         // title, second line and the unit of levels
constexpr double kBottom = 42;      // times
constexpr double kLaneGap = 8;      // below each lane
constexpr double kUsualPitch = 98;  // a lane with its gap
constexpr double kLeastPitch = 42;
constexpr double kLevelsGap = 8;  // from the levels to the plot
constexpr double kTimesGap = 20;  // from the lowest lane to the times
constexpr double kTitleY = 24;
constexpr double kDetailY = 47;
constexpr double kLevelUnitX = 68;
constexpr double kLevelUnitY = 66;
constexpr double kTitleSize = 19;
constexpr double kDetailSize = 13;
constexpr double kNameSize = 15;
constexpr double kTimeSize = 12.5;
constexpr double kLevelSize = 11;

constexpr double kSmallestUnit = 0.8;  // text of 10 pixels
constexpr double kLargestUnit = 4;

double UnitForWidth(int width) {
    return std::clamp(static_cast<double>(width) / kUsualOverviewWidth, kSmallestUnit, kLargestUnit);
}

double UnitsHigh(int lanes, double pitch) {
    return kTop + kBottom + pitch * lanes;
}

}  // namespace

int UsualOverviewHeight(int width, int lanes) {
    return std::min(kMostOverviewHeight,
                    static_cast<int>(std::lround(UnitForWidth(width) * UnitsHigh(lanes, kUsualPitch))));
}

int LeastOverviewHeight(int lanes) {
    return static_cast<int>(std::ceil(kSmallestUnit * UnitsHigh(lanes, kLeastPitch)));
}

lanes::LaneSheet OverviewSheet(int width, int height, int lanes) {
    const double unit = std::min(UnitForWidth(width), height / UnitsHigh(lanes, kLeastPitch));
    const double left = std::round(kPlotLeft * unit);
    const double right = width - std::round(kRight * unit);
    lanes::LaneSheet sheet{.width = static_cast<double>(width),
                           .height = static_cast<double>(height),
                           .unit = unit,
                           .lanes = {},
                           .namesX = kLeft * unit,
                           .levelsRight = left - kLevelsGap * unit,
                           .levelUnitX = kLevelUnitX * unit,
                           .levelUnitY = kLevelUnitY * unit,
                           .timesY = 0,
                           .nameSize = kNameSize * unit,
                           .levelSize = kLevelSize * unit,
                           .timeSize = kTimeSize * unit};
    const double pitch = (height - (kTop + kBottom) * unit) / lanes;
    for (int i = 0; i < lanes; ++i) {
        const double top = std::round(kTop * unit + pitch * i);
        const double bottom = std::round(kTop * unit + pitch * (i + 1) - kLaneGap * unit);
        sheet.lanes.push_back({left, top, right - left, bottom - top});
    }
    sheet.timesY = sheet.lanes.back().Bottom() + kTimesGap * unit;
    return sheet;
}

lanes::Drawing DrawOverview(const OverviewPage& page, const lanes::Measure& measure) {
    const lanes::LaneSheet& sheet = page.sheet;
    std::vector<std::size_t> order(page.values.channels.size());
    std::iota(order.begin(), order.end(), 0);
    lanes::Drawing drawing = DrawLanes(page.values, order, sheet, page.colours, measure);
    const double room = sheet.width - 2 * sheet.namesX;
    const auto add = [&](const std::string& text, const lanes::TextStyle& style, double y) {
        drawing.labels.push_back(MakeLabel(measure, text, style, Anchor::Left, sheet.namesX, y * sheet.unit, room));
    };
    add(page.title, {kTitleSize * sheet.unit, page.colours.title, true}, kTitleY);
    add(page.detail, {kDetailSize * sheet.unit, page.colours.text}, kDetailY);
    return drawing;
}

}  // namespace cli
