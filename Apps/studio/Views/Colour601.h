#pragma once

#include <array>

namespace studio {

/// Y', Cb, Cr of BT.601: Y' from 0 to 1, chroma from -0.5 to 0.5, nothing clipped.
struct Ycc {
    float y = 0;
    float cb = 0;
    float cr = 0;
};

/// R', G', B' from 0 to 1, nothing clipped.
struct Rgb {
    float r = 0;
    float g = 0;
    float b = 0;
};

/// BT.601's weights of R' and B' in Y'; that of G' is the rest.
inline constexpr float kWeightR = 0.299F;
inline constexpr float kWeightB = 0.114F;
inline constexpr float kWeightG = 1.0F - kWeightR - kWeightB;

constexpr Rgb ToRgb(const Ycc& colour) noexcept {
    const float r = colour.y + 2 * (1 - kWeightR) * colour.cr;
    const float b = colour.y + 2 * (1 - kWeightB) * colour.cb;
    return {r, (colour.y - kWeightR * r - kWeightB * b) / kWeightG, b};
}

/// 10-bit codes of legal range, not clipped: 64 is 0 and 940 is 1; chroma 512 is 0, 448 to either side 0.5.
constexpr int LumaCode10(float value) noexcept {
    const float code = 64 + 876 * value;
    return static_cast<int>(code < 0 ? code - 0.5F : code + 0.5F);
}
constexpr int ChromaCode10(float value) noexcept {
    const float code = 512 + 896 * value;
    return static_cast<int>(code < 0 ? code - 0.5F : code + 0.5F);
}

}  // namespace studio
