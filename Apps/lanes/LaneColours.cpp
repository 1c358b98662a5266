#include "Apps/lanes/LaneColours.h"

#include <array>

namespace lanes {

namespace {

// In the plug-in's order of channels: L, R, Ls, Rs, C, LFE.
constexpr std::array<Rgb, 6> kOnLight = {0x2158DB, 0xB83C0A, 0x0B7468, 0xB8327F, 0x6D3FD1, 0x5B6675};
constexpr std::array<Rgb, 6> kOnDark = {0x6EA8FF, 0xFF9557, 0x45D2C0, 0xF77FBE, 0xB39BFF, 0xA9B4C2};

}  // namespace

const LaneColours& LaneColours::Light() {
    static constexpr LaneColours kColours = {.background = 0xFFFFFF,
                                             .lane = 0xF5F6F8,
                                             .grid = 0xDDE1E6,
                                             .noData = 0xC9CED6,
                                             .title = 0x15191F,
                                             .text = 0x525B67,
                                             .waveforms = kOnLight};
    return kColours;
}

const LaneColours& LaneColours::Dark() {
    static constexpr LaneColours kColours = {.background = 0x14171C,
                                             .lane = 0x1D2128,
                                             .grid = 0x333A44,
                                             .noData = 0x454D59,
                                             .title = 0xF2F4F7,
                                             .text = 0xA7B0BC,
                                             .waveforms = kOnDark};
    return kColours;
}

}  // namespace lanes
