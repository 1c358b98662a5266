#include "Host/Lineup/Picture/ConvertedPicture.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::size_t kStrideStep = 64;

int RoundedUp(int length, int step) {
    return (length + step - 1) / step * step;
}

/// The picture with its last column and line repeated up to whole cells of chroma; empty where they are whole.
std::optional<FloatPicture> Padded(const FloatPicture& picture, const PlaneFormat& format) {
    const int fields = format.interlaced && format.subsampleHeight > 0 ? 2 : 1;
    const int width = RoundedUp(picture.Width(), 1 << format.subsampleWidth);
    const int height = RoundedUp(picture.Height(), fields << format.subsampleHeight);
    if (width == picture.Width() && height == picture.Height()) {
        return std::nullopt;
    }
    FloatPicture padded(width, height);
    for (int plane = 0; plane < FloatPicture::kPlanes; ++plane) {
        for (int line = 0; line < height; ++line) {
            const std::span<const float> from = picture.Line(plane, std::min(line, picture.Height() - 1));
            const std::span<float> to = padded.Line(plane, line);
            std::ranges::fill(std::ranges::copy(from, to.begin()).out, to.end(), from.back());
        }
    }
    return padded;
}

}  // namespace

ConvertedPicture::ConvertedPicture(const FloatPicture& picture, const PlaneFormat& format)
    : mValueBytes(format.bits > 8 ? 2 : 1) {
    const std::optional<FloatPicture> padded = Padded(picture, format);
    const FloatPicture& whole = padded ? *padded : picture;
    const std::size_t lineBytes = static_cast<std::size_t>(whole.Width()) * mValueBytes;
    mStride = (lineBytes + kStrideStep - 1) / kStrideStep * kStrideStep;
    std::array<PlaneMemory, kPlanes> memory{};
    for (std::size_t plane = 0; plane < kPlanes; ++plane) {
        mPlanes.at(plane) = zelcore::AllocateFrameMemory(mStride * static_cast<std::size_t>(whole.Height()));
        memory.at(plane) = {mPlanes.at(plane).get(), static_cast<std::ptrdiff_t>(mStride)};
    }
    ConvertColour(whole, format, memory);
}

const std::uint8_t* ConvertedPicture::Line(std::size_t plane, std::size_t line) const noexcept {
    return reinterpret_cast<const std::uint8_t*>(mPlanes[plane].get()) + line * mStride;
}

std::uint16_t ConvertedPicture::Value(std::size_t plane, std::size_t line, std::size_t x) const noexcept {
    const std::uint8_t* const place = Line(plane, line) + x * mValueBytes;
    std::uint16_t value = *place;
    if (mValueBytes == sizeof(value)) {
        std::memcpy(&value, place, sizeof(value));
    }
    return value;
}

}  // namespace parts
}  // namespace lineup
