#include "Host/Lineup/Picture/DrawnPicture.h"

#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <cstdint>
#include <cstring>

namespace lineup {
inline namespace parts {

namespace {

// Where a pixel's V, U and Y lie, in either format.
constexpr std::size_t kV = 0;
constexpr std::size_t kU = 1;
constexpr std::size_t kY = 2;
constexpr std::size_t kComponents = 4;

// 8-bit legal range: black at 16, white 219 above it; no colour at 128, its extremes 112 to either side.
float Luma(std::uint8_t code) {
    return (static_cast<float>(code) - 16.0F) / 219.0F;
}
float Chroma(std::uint8_t code) {
    return (static_cast<float>(code) - 128.0F) / 224.0F;
}

template <typename Component, typename ToLuma, typename ToChroma>
void UnpackLine(const std::uint8_t* line, const DrawnPicture::Line& into, ToLuma toLuma, ToChroma toChroma) {
    const auto& [luma, cb, cr] = into;
    const auto* pixel = reinterpret_cast<const Component*>(line);
    for (std::size_t x = 0; x < luma.size(); ++x, pixel += kComponents) {
        luma[x] = toLuma(pixel[kY]);
        cb[x] = toChroma(pixel[kU]);
        cr[x] = toChroma(pixel[kV]);
    }
}

std::uint32_t FormatOf(Card card) {
    return card == Card::HD ? kPixelFormat_VUYA_32f : kPixelFormat_VUYA_8u;
}

}  // namespace

DrawnPicture::DrawnPicture(const Clip& clip, int width, int height, Card card)
    : mFrame(clip.ReadFrame(width, height, FormatOf(ResolveCard(card, height)))) {}

void DrawnPicture::Unpack(int line, const Line& into) const {
    if (mFrame.PixelFormat() == kPixelFormat_VUYA_32f) {
        const auto same = [](float value) { return value; };
        UnpackLine<float>(mFrame.Line(line), into, same, same);
    } else {
        UnpackLine<std::uint8_t>(mFrame.Line(line), into, Luma, Chroma);
    }
}

bool DrawnPicture::AreAlike(int line, int other) const {
    const int pixelBytes =
        mFrame.PixelFormat() == kPixelFormat_VUYA_32f ? kBytesPerPixel_VUYA_32f : kBytesPerPixel_VUYA_8u;
    return std::memcmp(mFrame.Line(line), mFrame.Line(other),
                       static_cast<std::size_t>(Width()) * static_cast<std::size_t>(pixelBytes)) == 0;
}

}  // namespace parts
}  // namespace lineup
