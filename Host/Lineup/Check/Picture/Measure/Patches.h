#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Place.h"
#include "Host/Lineup/Check/Picture/Raster.h"

#include <vector>

namespace lineup::picture {

/// The middle of a patch.
struct MeasuredPatch {
    const CardPatch* patch = nullptr;
    Triple codes{};     ///< means of the frame's planes; of one without colour 128 for Cb and Cr
    double noise = 0;   ///< r.m.s. of the first plane, codes
    double uneven = 0;  ///< how far parts of it differ, codes: something lies over it
};

/// Those that lie in the frame. What covers less than half of a patch, a logo or a time code, does not count.
[[nodiscard]] std::vector<MeasuredPatch> MeasurePatches(const Raster& raster, const CardModel& model,
                                                        const Place& place);

}  // namespace lineup::picture
