#include "Host/Lineup/Picture/FloatPicture.h"

#include "Host/Lineup/Picture/DrawnPicture.h"

#include <memory>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::size_t kAlignmentBytes = 64;
constexpr std::size_t kFloatsPerAlignment = kAlignmentBytes / sizeof(float);

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
    const DrawnPicture drawn(clip, width, height, card);
    FloatPicture picture(width, height);
    for (int line = 0; line < height; ++line) {
        drawn.Unpack(line, {picture.Line(0, line), picture.Line(1, line), picture.Line(2, line)});
    }
    return picture;
}

}  // namespace parts
}  // namespace lineup
