#pragma once

#include "Apps/lanes/LaneDrawing.h"

#include <string>

namespace cli {

// Pixels.
inline constexpr int kLeastOverviewWidth = 400;
inline constexpr int kMostOverviewWidth = 8192;
inline constexpr int kMostOverviewHeight = 8192;
inline constexpr int kUsualOverviewWidth = 1200;

/// The height that gives each lane 90 units or, where there are too many for that, all there is.
[[nodiscard]] int UsualOverviewHeight(int width, int lanes);

/// The least height at which every lane can be read.
[[nodiscard]] int LeastOverviewHeight(int lanes);

/// Where the parts of an overview stand in a picture. All sizes follow from one unit, a pixel in a picture 1200 wide:
/// text and lines grow with the picture, so that it reads the same whether it is shown small or printed large. A low
/// picture with many lanes takes a smaller unit. Width and height are within the limits above; `lanes` is 1 or more.
[[nodiscard]] lanes::LaneSheet OverviewSheet(int width, int height, int lanes);

/// All that a picture of a clip's sound is drawn from. `values` has as many channels as `sheet` has lanes.
struct OverviewPage {
    lineup::WaveformOverview values;
    std::string title;
    std::string detail;  ///< below the title
    lanes::LaneSheet sheet;
    lanes::LaneColours colours;
};

/// The heading, and below it a lane a channel in the plug-in's order, its name and levels on the left, times below.
[[nodiscard]] lanes::Drawing DrawOverview(const OverviewPage& page, const lanes::Measure& measure);

}  // namespace cli
