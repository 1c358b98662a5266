#include "Host/Lineup/Check/Picture/Find/PatchFit.h"

#include "Host/Lineup/Check/Picture/LeastSquares.h"
#include "Host/Lineup/Check/Picture/Median.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace lineup::picture {

namespace {

constexpr int kGrid = 5;
constexpr double kMiddle = 0.6;
constexpr int kFewestPatches = 8;

// The median of pixels on a grid in the middle of a patch, for each plane.
std::optional<Triple> Glance(const SmallRaster& small, const Box& box) {
    std::array<std::vector<double>, 3> seen;
    for (int row = 0; row < kGrid; ++row) {
        for (int column = 0; column < kGrid; ++column) {
            const auto at = [](double first, double end, int step) {
                return first + (end - first) * (0.5 + kMiddle * ((step + 0.5) / kGrid - 0.5));
            };
            const int x = static_cast<int>(std::floor(at(box.left, box.right, column)));
            const int y = static_cast<int>(std::floor(at(box.top, box.bottom, row)));
            if (x < 0 || x >= small.width || y < 0 || y >= small.height) {
                continue;
            }
            for (std::size_t p = 0; p < 3; ++p) {
                seen.at(p).push_back(static_cast<double>(small.At(p, x, y)));
            }
        }
    }
    if (seen[0].size() < kGrid * kGrid / 3) {
        return std::nullopt;
    }
    Triple median{};
    std::ranges::transform(seen, median.begin(), [](std::vector<double>& of) { return UpperMedian(of); });
    return median;
}

}  // namespace

PatchFit FitPatches(const SmallRaster& small, const CardModel& model, const Place& place) {
    std::vector<Triple> sent;
    std::vector<Triple> found;
    Triple mean{};
    for (const CardPatch& patch : model.patches) {
        if (const auto seen = Glance(small, place.Of(patch.box))) {
            sent.push_back(patch.rgb);
            found.push_back(*seen);
            for (std::size_t p = 0; p < 3; ++p) {
                mean.at(p) += seen->at(p);
            }
        }
    }
    const auto count = static_cast<double>(sent.size());
    if (sent.size() < kFewestPatches) {
        return {};
    }
    double all = 0;
    double left = 0;
    double luma = 0;
    for (std::size_t p = 0; p < 3; ++p) {
        LeastSquares<4> fit;
        for (std::size_t i = 0; i < sent.size(); ++i) {
            fit.Add({sent[i][0], sent[i][1], sent[i][2], 1}, found[i].at(p));
        }
        const auto by = fit.Solve();
        for (std::size_t i = 0; i < sent.size(); ++i) {
            const double off = found[i].at(p) - mean.at(p) / count;
            const double unexplained =
                found[i].at(p) - by[0] * sent[i][0] - by[1] * sent[i][1] - by[2] * sent[i][2] - by[3];
            all += off * off;
            luma += p == 0 ? off * off : 0;
            left += unexplained * unexplained;
        }
    }
    return {.explained = all > 0 ? 1 - left / all : 0,
            .contrast = std::sqrt(luma / count),
            .patches = static_cast<int>(sent.size())};
}

}  // namespace lineup::picture
