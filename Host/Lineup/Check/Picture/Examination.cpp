#include "Host/Lineup/Check/Picture/Examination.h"

#include "Host/Lineup/Check/Picture/Measure/Coding.h"
#include "Host/Lineup/Check/Picture/Median.h"

#include <algorithm>

namespace lineup::picture {

namespace {

// Patches of a picture other than a card are full of things.
bool IsEven(const MeasuredPatch& patch) {
    constexpr double kEven = 6;  // codes
    return patch.uneven < kEven && patch.noise < 2 * kEven;
}

double MedianNoise(const std::vector<MeasuredPatch>& patches) {
    std::vector<double> noises;
    noises.reserve(patches.size());
    for (const MeasuredPatch& patch : patches) {
        noises.push_back(patch.noise);
    }
    return UpperMedian(noises);
}

}  // namespace

std::optional<Examination> Examine(const DecodedPicture& picture, const Raster& raster, const CardModel& model,
                                   const Geometry& geometry) {
    if (!geometry.isExact) {
        return std::nullopt;
    }
    Examination seen;
    seen.model = &model;
    seen.head = picture.head;
    seen.geometry = geometry;
    const Place& place = seen.geometry.place;
    seen.patches = MeasurePatches(raster, model, place);
    const auto even = static_cast<std::size_t>(std::ranges::count_if(seen.patches, IsEven));
    if (seen.patches.size() * 2 < model.patches.size() || even * 4 < seen.patches.size() * 3) {
        return std::nullopt;
    }
    seen.ramp = MeasureRamp(picture, model, place);
    seen.chroma = MeasureChroma(raster, model, place);
    seen.softAcross = MeasureSoftness(raster, model, place, true);
    seen.softDown = MeasureSoftness(raster, model, place, false);
    seen.ringing = MeasureRinging(raster, model, place);
    seen.blocking = MeasureBlocking(raster, model, place);
    seen.noise = MedianNoise(seen.patches);
    return seen;
}

}  // namespace lineup::picture
