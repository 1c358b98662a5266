#pragma once

#include <lineup/WaveformOverview.h>
#include "Apps/lanes/Drawing.h"
#include "Apps/lanes/LevelScale.h"

#include <vector>

namespace lanes {

/// How one channel is drawn.
struct WaveformStyle {
    Rectangle lane;  ///< the whole of it is the overview's length by the scale's range
    LevelScale scale = LevelScale::Decibels();
    Rgb colour = 0;
    Rgb noData = 0;
    double unit = 1;  ///< pixels
    bool isWave = false;
};

/// Adds a channel's columns. Neighbours of one height are one box.
void AddWaveform(const lineup::ChannelOverview& channel, const WaveformStyle& style, std::vector<Box>& boxes);

}  // namespace lanes
