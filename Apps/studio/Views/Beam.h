#pragma once

#include <QRgb>

namespace studio {

/// Points from the middle of a trace to where the beam ends.
inline constexpr double kBeamReach = 3;

/// The beam's brightness at a distance from the middle of its line or dot, in points.
[[nodiscard]] float Beam(double distance);

/// The colour of a trace.
struct BeamTint {
    float red;
    float green;
    float blue;
};
inline constexpr BeamTint kPhosphor{0.42F, 0.95F, 0.62F};

/// `tint` at a brightness from 0 to 1, towards white where it is brightest. Premultiplied, so that it adds up with the
/// graticule.
[[nodiscard]] QRgb BeamColour(float brightness, const BeamTint& tint = kPhosphor);

}  // namespace studio
