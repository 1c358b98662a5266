#include "Host/Lineup/Check/Picture/Find/FindCard.h"

#include "Host/Lineup/Check/Picture/Find/EdgeProfile.h"
#include "Host/Lineup/Check/Picture/Find/PatchFit.h"

namespace lineup::picture {

namespace {

constexpr int kSmall = 320;  // pixels
constexpr double kExplained = 0.9;
constexpr double kLeastContrast = 8;  // codes
constexpr std::size_t kSpans = 24;    // along each axis

class Search {
public:
    explicit Search(const Raster& raster)
        : mSmall(MakeSmall(raster, kSmall)), mScale(static_cast<double>(raster.width) / mSmall.width) {}

    void TryWholeFrame(const CardModel& model) {
        for (const bool mirrored : {false, true}) {
            for (const bool flipped : {false, true}) {
                Try(model,
                    {0, 0, static_cast<double>(mSmall.width), static_cast<double>(mSmall.height), mirrored, flipped});
            }
        }
    }

    void TryEverywhere(const CardModel& model) {
        const std::vector<Span> across = LikelySpans(mSmall, model, true, kSpans);
        const std::vector<Span> down = LikelySpans(mSmall, model, false, kSpans);
        for (const Span& x : across) {
            for (const Span& y : down) {
                Try(model, {x.start, y.start, x.length, y.length, x.turned, y.turned});
            }
        }
    }

    [[nodiscard]] std::optional<FoundCard> Result() const {
        if (mBest.explained < kExplained) {
            return std::nullopt;
        }
        FoundCard found = mBest;
        for (double* const value : {&found.place.x, &found.place.y, &found.place.width, &found.place.height}) {
            *value *= mScale;
        }
        return found;
    }

private:
    void Try(const CardModel& model, const Place& place) {
        const PatchFit fit = FitPatches(mSmall, model, place);
        if (fit.contrast >= kLeastContrast && fit.explained > mBest.explained &&
            fit.patches * 3 >= static_cast<int>(model.patches.size()) * 2) {
            mBest = {&model, place, fit.explained};
        }
    }

    Raster mSmall;
    double mScale;
    FoundCard mBest;
};

}  // namespace

std::optional<FoundCard> FindInWholeFrame(const Raster& raster, std::span<const CardModel> models) {
    Search search(raster);
    for (const CardModel& model : models) {
        search.TryWholeFrame(model);
    }
    return search.Result();
}

std::optional<FoundCard> FindAnywhere(const Raster& raster, std::span<const CardModel> models) {
    Search search(raster);
    for (const CardModel& model : models) {
        search.TryEverywhere(model);
    }
    return search.Result();
}

}  // namespace lineup::picture
