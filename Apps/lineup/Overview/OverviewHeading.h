#pragma once

#include <string>

namespace cli {

/// What stands above an overview, and the rate that its start is counted at.
struct OverviewHeading {
    std::string title;
    std::string detail;
    float sampleRateHz = 0;
};

}  // namespace cli
