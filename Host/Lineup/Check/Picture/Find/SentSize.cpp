#include "Host/Lineup/Check/Picture/Find/SentSize.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::picture {

namespace {

constexpr std::array<CardSize, 16> kUsual = {{{720, 576},
                                              {720, 480},
                                              {720, 486},
                                              {704, 576},
                                              {704, 480},
                                              {1920, 1080},
                                              {1280, 720},
                                              {3840, 2160},
                                              {640, 360},
                                              {960, 540},
                                              {1024, 576},
                                              {1440, 1080},
                                              {2048, 1080},
                                              {2560, 1440},
                                              {4096, 2160},
                                              {7680, 4320}}};
constexpr double kWidthKnown = 0.01;  // of it, that a place errs by whose edges were rounded at another size
constexpr double kHeightKnown = 0.01;
constexpr double kHeightKnownOfSd = 0.06;
constexpr double kShapeKnown = 0.06;   // of width over height, the same
constexpr int kHighestRounded = 1080;  // lines of a card whose edges' rounding matters

bool IsNear(int size, double found, double known) {
    return std::abs(size - found) <= known * found;
}

}  // namespace

bool IsUsual(const CardSize& size) {
    return std::ranges::find(kUsual, size) != kUsual.end();
}

std::vector<CardSize> LikelySentSizes(Card card, const Place& place) {
    const double heightKnown = card == Card::SD ? kHeightKnownOfSd : kHeightKnown;
    std::vector<CardSize> sizes;
    std::ranges::copy_if(kUsual, std::back_inserter(sizes), [&](const CardSize& size) {
        return IsNear(size.width, place.width, kWidthKnown) && IsNear(size.height, place.height, heightKnown);
    });
    const CardSize measured{static_cast<int>(std::lround(place.width)), static_cast<int>(std::lround(place.height))};
    if (std::ranges::find(sizes, measured) == sizes.end()) {
        sizes.push_back(measured);
    }
    return sizes;
}

std::vector<CardSize> LikelyFirstSizes(const Place& place) {
    std::vector<CardSize> sizes;
    std::ranges::copy_if(kUsual, std::back_inserter(sizes), [&](const CardSize& size) {
        const double stretch = place.width * size.height / (place.height * size.width);
        return size.height <= kHighestRounded && std::abs(stretch - 1) <= kShapeKnown;
    });
    return sizes;
}

}  // namespace lineup::picture
