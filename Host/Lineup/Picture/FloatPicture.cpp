#include "Host/Lineup/Picture/FloatPicture.h"

#include "Host/Interface/Frame/PixelFormats.h"

#include <memory>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::size_t kAlignmentBytes = 64;
constexpr std::size_t kFloatsPerAlignment = kAlignmentBytes / sizeof(float);

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
FloatPicture Unpack(const zelcore::FrameBuffer& frame, ToLuma toLuma, ToChroma toChroma) {
    FloatPicture picture(frame.Width(), frame.Height());
    for (int line = 0; line < frame.Height(); ++line) {
        const auto* pixel = reinterpret_cast<const Component*>(frame.Line(line));
        const auto luma = picture.Line(0, line);
        const auto cb = picture.Line(1, line);
        const auto cr = picture.Line(2, line);
        for (std::size_t x = 0; x < luma.size(); ++x, pixel += kComponents) {
            luma[x] = toLuma(pixel[kY]);
            cb[x] = toChroma(pixel[kU]);
            cr[x] = toChroma(pixel[kV]);
        }
    }
    return picture;
}

}  // namespace

FloatPicture::FloatPicture(int width, int height)
    : mWidth(width),
      mHeight(height),
      mStride((static_cast<std::size_t>(width) + kFloatsPerAlignment - 1) / kFloatsPerAlignment * kFloatsPerAlignment),
      mMemory(zelcore::AllocateFrameMemory(NumValues() * sizeof(float))) {
    std::uninitialized_fill_n(Values(), NumValues(), 0.0F);
}

std::size_t FloatPicture::NumValues() const noexcept {
    return mStride * static_cast<std::size_t>(mHeight) * kPlanes;
}

float* FloatPicture::Values() const noexcept {
    return reinterpret_cast<float*>(mMemory.get());
}

std::ptrdiff_t FloatPicture::StrideBytes() const noexcept {
    return static_cast<std::ptrdiff_t>(mStride * sizeof(float));
}

std::size_t FloatPicture::Offset(int plane, int line) const noexcept {
    return (static_cast<std::size_t>(plane) * static_cast<std::size_t>(mHeight) + static_cast<std::size_t>(line)) *
           mStride;
}

std::span<float> FloatPicture::Line(int plane, int line) noexcept {
    return {Values() + Offset(plane, line), static_cast<std::size_t>(mWidth)};
}

std::span<const float> FloatPicture::Line(int plane, int line) const noexcept {
    return {Values() + Offset(plane, line), static_cast<std::size_t>(mWidth)};
}

Card ResolveCard(Card card, int height) {
    if (card != Card::Auto) {
        return card;
    }
    return height < kFewestHdLines ? Card::SD : Card::HD;
}

FloatPicture ReadPicture(const Clip& clip, int width, int height, Card card) {
    if (ResolveCard(card, height) == Card::HD) {
        const auto same = [](float value) { return value; };
        return Unpack<float>(clip.ReadFrame(width, height, kPixelFormat_VUYA_32f), same, same);
    }
    return Unpack<std::uint8_t>(clip.ReadFrame(width, height, kPixelFormat_VUYA_8u), Luma, Chroma);
}

}  // namespace parts
}  // namespace lineup
