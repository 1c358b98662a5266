#pragma once

#include <lineup/Card.h>

namespace studio {

/// Y', Cb, Cr: Y' from 0 to 1, chroma from -0.5 to 0.5, nothing clipped.
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

/// By which R', G', B' become Y', Cb, Cr.
enum class Matrix { Bt601, Bt709 };

constexpr const char* NameOf(Matrix matrix) noexcept {
    return matrix == Matrix::Bt601 ? "BT.601" : "BT.709";
}

/// That of an exported video of so many lines.
constexpr Matrix MatrixOfExport(int height) noexcept {
    return height >= lineup::kFewestHdLines ? Matrix::Bt709 : Matrix::Bt601;
}

/// The weights of R' and B' in Y'; that of G' is the rest.
struct LumaWeights {
    float r;
    float b;
    [[nodiscard]] constexpr float G() const noexcept { return 1.0F - r - b; }
};
constexpr LumaWeights WeightsOf(Matrix matrix) noexcept {
    return matrix == Matrix::Bt601 ? LumaWeights{0.299F, 0.114F} : LumaWeights{0.2126F, 0.0722F};
}

constexpr Rgb ToRgb(const Ycc& colour, Matrix matrix) noexcept {
    const LumaWeights weights = WeightsOf(matrix);
    const float r = colour.y + 2 * (1 - weights.r) * colour.cr;
    const float b = colour.y + 2 * (1 - weights.b) * colour.cb;
    return {r, (colour.y - weights.r * r - weights.b * b) / weights.G(), b};
}

constexpr Ycc ToYcc(const Rgb& colour, Matrix matrix) noexcept {
    const LumaWeights weights = WeightsOf(matrix);
    const float y = weights.r * colour.r + weights.G() * colour.g + weights.b * colour.b;
    return {y, (colour.b - y) / (2 * (1 - weights.b)), (colour.r - y) / (2 * (1 - weights.r))};
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
