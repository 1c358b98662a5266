#pragma once

#include "Host/Lineup/Check/Picture/CardModel.h"
#include "Host/Lineup/Check/Picture/Measure/Chroma.h"
#include "Host/Lineup/Check/Picture/Measure/Geometry.h"
#include "Host/Lineup/Check/Picture/Measure/Patches.h"
#include "Host/Lineup/Check/Picture/Measure/Ramp.h"

#include <optional>
#include <vector>

namespace lineup::picture {

/// Everything that was measured in one frame. Patches and edges point into `model`, which must outlive it.
struct Examination {
    const CardModel* model = nullptr;
    decoding::Frame head{};
    Geometry geometry;
    std::vector<MeasuredPatch> patches;
    std::optional<RampSteps> ramp;
    ChromaShape chroma;
    std::optional<double> softAcross;  ///< how wide luma's edges are, pixels
    std::optional<double> softDown;
    std::optional<double> ringing;   ///< % of an edge's step
    std::optional<double> blocking;  ///< % of what patches are uneven
    double noise = 0;                ///< codes
};

/// Measures a card that lies at this place; empty where it turns out not to be a card.
[[nodiscard]] std::optional<Examination> Examine(const DecodedPicture& picture, const Raster& raster,
                                                 const CardModel& model, const Geometry& geometry);

}  // namespace lineup::picture
