#include "Apps/studio/Views/Beam.h"

#include <algorithm>
#include <cmath>

namespace studio {

namespace {

constexpr double kGlow = 0.75;        // points from a trace's middle to where it is half as bright
constexpr float kCoreBegins = 0.75F;  // the brightness from which on it turns white
constexpr float kCoreStrength = 2.4F;

}  // namespace

float Beam(double distance) {
    return static_cast<float>(std::exp2(-(distance * distance) / (kGlow * kGlow)));
}

QRgb BeamColour(float brightness, const BeamTint& tint) {
    brightness = std::min(1.0F, brightness);
    const float core = std::max(0.0F, brightness - kCoreBegins) * kCoreStrength;
    const auto part = [&](float share) {
        const float value = brightness * share + core * (1 - share) * 0.8F;
        return static_cast<int>(255 * std::clamp(value, 0.0F, 1.0F));
    };
    return qRgba(part(tint.red), part(tint.green), part(tint.blue), static_cast<int>(255 * brightness));
}

}  // namespace studio
