#include "Host/Lineup/Export/Media/GopTimecode.h"

#include <lineup/Error.h>

#include <algorithm>
#include <array>

extern "C" {
#include <libavutil/timecode.h>
}

namespace lineup {

namespace {

constexpr std::array<std::uint8_t, 4> kGroupStart = {0x00, 0x00, 0x01, 0xB8};

// After the start code: drop frame (1 bit), hours (5), minutes (6), a one, seconds (6), frames (6); then two flags
// that stay as they are, and five bits of nothing.
constexpr int kBitsAfterFrames = 7;
constexpr std::uint32_t kBitsThatStay = (1U << kBitsAfterFrames) - 1;
constexpr std::size_t kFieldBytes = 4;

}  // namespace

GopTimecode::GopTimecode(const std::optional<Timecode>& first, Rational frameRate)
    : mFramesPerSecond((frameRate.num + frameRate.den / 2) / frameRate.den) {
    if (first) {
        mDropFrame = first->DropFrame();
        mFirst = first->Frames();
    }
}

void GopTimecode::Set(std::span<std::uint8_t> picture, std::int64_t index) const {
    const auto head = std::ranges::search(picture, kGroupStart);
    if (head.empty() || picture.end() - head.end() < static_cast<std::ptrdiff_t>(kFieldBytes)) {
        throw Error("cannot repeat a picture: it has no time code to set");
    }
    constexpr std::int64_t kSecondsADay = 86'400;
    auto number = static_cast<int>((mFirst + index) % (kSecondsADay * mFramesPerSecond));
    if (mDropFrame) {
        number = av_timecode_adjust_ntsc_framenum2(static_cast<int>(mFirst + index), mFramesPerSecond);
    }
    const int seconds = number / mFramesPerSecond;
    std::uint32_t field = mDropFrame ? 1 : 0;
    field = field << 5 | static_cast<std::uint32_t>(seconds / 3600 % 24);
    field = field << 6 | static_cast<std::uint32_t>(seconds / 60 % 60);
    field = field << 1 | 1U;
    field = field << 6 | static_cast<std::uint32_t>(seconds % 60);
    field = field << 6 | static_cast<std::uint32_t>(number % mFramesPerSecond);
    auto* const bytes = &*head.end();
    field = field << kBitsAfterFrames | (bytes[kFieldBytes - 1] & kBitsThatStay);
    for (std::size_t i = 0; i < kFieldBytes; ++i) {
        bytes[i] = static_cast<std::uint8_t>(field >> (8 * (kFieldBytes - 1 - i)));
    }
}

}  // namespace lineup
