#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Services/Frames/FillRows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>

namespace {

using Pixel8 = std::array<std::uint8_t, 4>;  // V, U, Y, A
using PixelFloat = std::array<float, 4>;     // V, U, Y, A

// How a component's 8-bit codes stand for its value: BT.601 legal range, alpha over the full range.
struct Coding {
    float zero;  // the code of 0.0
    float span;  // codes from 0.0 to 1.0
};
constexpr std::array<Coding, 4> kCodings = {{
    {128.0F, 224.0F},  // V
    {128.0F, 224.0F},  // U
    {16.0F, 219.0F},   // Y
    {0.0F, 255.0F},    // A
}};

PixelFloat ToFloat(const Pixel8& codes) {
    PixelFloat values{};
    for (std::size_t i = 0; i < codes.size(); ++i) {
        values.at(i) = (static_cast<float>(codes.at(i)) - kCodings.at(i).zero) / kCodings.at(i).span;
    }
    return values;
}

// Not-a-number becomes the lowest code.
Pixel8 ToCodes(const PixelFloat& values) {
    Pixel8 codes{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const float code = std::round(values.at(i) * kCodings.at(i).span + kCodings.at(i).zero);
        codes.at(i) = static_cast<std::uint8_t>(code >= 0.0F ? std::min(code, 255.0F) : 0.0F);
    }
    return codes;
}

template <class Pixel>
Pixel Load(const void* colour) {
    Pixel pixel{};
    std::memcpy(&pixel, colour, sizeof pixel);
    return pixel;
}

std::optional<Pixel8> As8Bit(const void* colour, std::uint32_t format) {
    switch (format) {
        case kFillFormat_VUYA_8u:
            return Load<Pixel8>(colour);
        case kFillFormat_VUYA_32f:
            return ToCodes(Load<PixelFloat>(colour));
        default:
            return std::nullopt;
    }
}

std::optional<PixelFloat> AsFloat(const void* colour, std::uint32_t format) {
    switch (format) {
        case kFillFormat_VUYA_8u:
            return ToFloat(Load<Pixel8>(colour));
        case kFillFormat_VUYA_32f:
            return Load<PixelFloat>(colour);
        default:
            return std::nullopt;
    }
}

template <class Pixel>
void Fill(void* destination, int rowBytes, int width, int height, const std::optional<Pixel>& pixel) {
    if (pixel) {
        zelcore::FillRows(static_cast<std::uint8_t*>(destination), rowBytes, width, height,
                          zelcore::ColourLine(*pixel));
    }
}

}  // namespace

void IR_FillWithColor(void* destination, int rowBytes, int width, int height, std::uint32_t destinationFormat,
                      const void* colour, std::uint32_t colourFormat) {
    if (width <= 0 || height <= 0) {
        return;
    }
    if (destinationFormat == kFillFormat_VUYA_8u) {
        Fill(destination, rowBytes, width, height, As8Bit(colour, colourFormat));
    } else if (destinationFormat == kFillFormat_VUYA_32f) {
        Fill(destination, rowBytes, width, height, AsFloat(colour, colourFormat));
    }
}
