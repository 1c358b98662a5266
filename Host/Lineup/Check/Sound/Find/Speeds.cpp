#include "Host/Lineup/Check/Sound/Find/Speeds.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr std::array<KnownSpeed, 10> kSpeeds = {{
    {48000.0 / 44100.0, "44.1 kHz played as 48 kHz"},
    {44100.0 / 48000.0, "48 kHz played as 44.1 kHz"},
    {48000.0 / 47952.0, "pulled up by 1001/1000, 23.976 played as 24 or 29.97 as 30"},
    {47952.0 / 48000.0, "pulled down by 1000/1001, 24 played as 23.976 or 30 as 29.97"},
    {25.0 / 24.0, "24 frames a second played as 25"},
    {24.0 / 25.0, "25 frames a second played as 24"},
    {25.0 * 1001.0 / 24000.0, "23.976 frames a second played as 25"},
    {24000.0 / (25.0 * 1001.0), "25 frames a second played as 23.976"},
    {48000.0 / 44056.0, "44.056 kHz played as 48 kHz"},
    {44056.0 / 48000.0, "48 kHz played as 44.056 kHz"},
}};

}  // namespace

std::span<const KnownSpeed> KnownSpeeds() {
    return kSpeeds;
}

const KnownSpeed* FindKnownSpeed(double ratio, double ppm) {
    const auto off = [ratio](const KnownSpeed& speed) { return std::abs(ratio / speed.ratio - 1) * 1e6; };
    const auto* const nearest = std::ranges::min_element(kSpeeds, {}, off);
    return off(*nearest) <= ppm ? nearest : nullptr;
}

}  // namespace lineup::sound
