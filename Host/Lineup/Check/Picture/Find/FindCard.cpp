#include "Host/Lineup/Check/Picture/Find/FindCard.h"

#include "Host/Lineup/Check/Picture/Find/EdgeProfile.h"
#include "Host/Lineup/Check/Picture/Find/PatchFit.h"

namespace lineup::picture {

namespace {

constexpr int kSmall = 320;  // pixels
constexpr double kExplained = 0.9;
constexpr double kLeastContrast = 8;  // codes
constexpr std::size_t kSpans = 24;    // along each axis
constexpr std::size_t kMoreSpans = 56;

}  // namespace

CardSearch::CardSearch(const Raster& raster)
    : mSmall(MakeSmall(raster, kSmall)), mScale(static_cast<double>(raster.width) / mSmall.width) {}

void CardSearch::Try(const CardModel& model, const Place& place, FoundCard& best) const {
    const PatchFit fit = FitPatches(mSmall, model, place);
    if (fit.contrast >= kLeastContrast && fit.explained > best.explained &&
        fit.patches * 3 >= static_cast<int>(model.patches.size()) * 2) {
        best = {&model, place, fit.explained};
    }
}

std::optional<FoundCard> CardSearch::Scaled(FoundCard best) const {
    if (best.explained < kExplained) {
        return std::nullopt;
    }
    for (double* const value : {&best.place.x, &best.place.y, &best.place.width, &best.place.height}) {
        *value *= mScale;
    }
    return best;
}

std::optional<FoundCard> CardSearch::InWholeFrame(std::span<const CardModel> models) const {
    FoundCard best;
    const auto width = static_cast<double>(mSmall.width);
    const auto height = static_cast<double>(mSmall.height);
    for (const CardModel& model : models) {
        for (const bool mirrored : {false, true}) {
            for (const bool flipped : {false, true}) {
                Try(model, {0, 0, width, height, mirrored, flipped}, best);
            }
        }
    }
    return Scaled(best);
}

std::optional<FoundCard> CardSearch::Anywhere(std::span<const CardModel> models, Care care) const {
    const std::size_t most = care == Care::Great ? kMoreSpans : kSpans;
    FoundCard best;
    for (const CardModel& model : models) {
        const std::vector<Span> across = LikelySpans(mSmall, model, true, most);
        const std::vector<Span> down = LikelySpans(mSmall, model, false, most);
        for (const Span& x : across) {
            for (const Span& y : down) {
                Try(model, {x.start, y.start, x.length, y.length, x.turned, y.turned}, best);
            }
        }
    }
    return Scaled(best);
}

}  // namespace lineup::picture
