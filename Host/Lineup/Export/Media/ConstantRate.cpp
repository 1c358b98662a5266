#include "Host/Lineup/Export/Media/ConstantRate.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace lineup {

namespace {

constexpr std::array<std::uint8_t, 4> kPictureStart = {0x00, 0x00, 0x01, 0x00};
constexpr std::int64_t kByteBits = 8;

// After the start code: the picture's number (10 bits), its type (3), the delay (16), in the units of a clock.
constexpr std::int64_t kDelayTicksPerSecond = 90'000;

std::int64_t RoundedUp(std::int64_t number, std::int64_t divisor) {
    return (number + divisor - 1) / divisor;
}

void SetDelay(std::span<std::uint8_t> picture, std::int64_t ticks) {
    const auto head = std::ranges::search(picture, kPictureStart);
    if (picture.end() - head.end() < static_cast<std::ptrdiff_t>(kPictureStart.size())) {
        throw Error("cannot make a picture part of a constant bit rate: it has no head");
    }
    const auto delay = static_cast<std::uint32_t>(ticks);
    auto* const bytes = &*head.end();
    bytes[1] = static_cast<std::uint8_t>((bytes[1] & 0xF8U) | delay >> 13U);
    bytes[2] = static_cast<std::uint8_t>(delay >> 5U);
    bytes[3] = static_cast<std::uint8_t>((bytes[3] & 0x07U) | delay << 3U);
}

}  // namespace

ConstantRate::ConstantRate(std::int64_t bitsPerSecond, Rational frameRate)
    : mBitsPerSecond(bitsPerSecond), mFrameRate(frameRate) {}

std::int64_t ConstantRate::BytesOf(std::int64_t index) const {
    // Of the frames that one number of seconds has, so that no product grows with the index.
    const std::int64_t place = index % mFrameRate.num;
    const auto before = [this](std::int64_t frames) {
        return frames * mFrameRate.den * mBitsPerSecond / kByteBits / mFrameRate.num;
    };
    return before(place + 1) - before(place);
}

void ConstantRate::FillUp(AVPacket& picture) const {
    const std::int64_t longest = RoundedUp(mBitsPerSecond * mFrameRate.den, kByteBits * mFrameRate.num);
    const auto missing = static_cast<int>(std::max<std::int64_t>(longest - picture.size, 0));
    const int size = picture.size;
    RequireAv(av_grow_packet(&picture, missing), "cannot fill a picture up to a constant bit rate");
    std::fill_n(picture.data + size, missing, std::uint8_t{0});
    SetDelay({picture.data, static_cast<std::size_t>(picture.size)},
             RoundedUp(kDelayTicksPerSecond * mFrameRate.den, mFrameRate.num));
}

}  // namespace lineup
