#include "Apps/lineup/Overview/OverviewLayout.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

// In units.
constexpr double kLeft = 20;        // of the picture's edge to the names
constexpr double kPlotLeft = 104;   // names and level labels fit in front of it
constexpr double kRight = 28;       // half a time label fits behind the plot
constexpr double kTop = 76;         // title, second line and the levels' heading
constexpr double kBottom = 42;      // time labels
constexpr double kLaneGap = 8;      // below each lane
constexpr double kUsualPitch = 98;  // a lane with its gap
constexpr double kLeastPitch = 42;

constexpr double kSmallestUnit = 0.8;  // text of 10 pixels
constexpr double kLargestUnit = 4;

double UnitForWidth(int width) {
    return std::clamp(static_cast<double>(width) / OverviewLayout::kUsualWidth, kSmallestUnit, kLargestUnit);
}

double UnitsHigh(int lanes, double pitch) {
    return kTop + kBottom + pitch * lanes;
}

int Whole(double pixels) {
    return static_cast<int>(std::lround(pixels));
}

}  // namespace

OverviewLayout::OverviewLayout(int width, int height, int lanes)
    : mWidth(width),
      mHeight(height),
      mLanes(lanes),
      mUnit(std::min(UnitForWidth(width), height / UnitsHigh(lanes, kLeastPitch))),
      mPlotLeft(Whole(kPlotLeft * mUnit)),
      mPlotWidth(width - mPlotLeft - Whole(kRight * mUnit)) {}

int OverviewLayout::UsualHeight(int width, int lanes) {
    return std::min(kMostHeight, Whole(UnitForWidth(width) * UnitsHigh(lanes, kUsualPitch)));
}

int OverviewLayout::LeastHeight(int lanes) {
    return static_cast<int>(std::ceil(kSmallestUnit * UnitsHigh(lanes, kLeastPitch)));
}

Rectangle OverviewLayout::Lane(int index) const {
    const double pitch = (mHeight - (kTop + kBottom) * mUnit) / mLanes;
    const double top = std::round(kTop * mUnit + pitch * index);
    const double bottom = std::round(kTop * mUnit + pitch * (index + 1) - kLaneGap * mUnit);
    return {static_cast<double>(mPlotLeft), top, static_cast<double>(mPlotWidth), bottom - top};
}

double OverviewLayout::LevelLabelsRight() const {
    return mPlotLeft - 8 * mUnit;
}

double OverviewLayout::Left() const {
    return kLeft * mUnit;
}

}  // namespace cli
