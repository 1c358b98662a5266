#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Requests.h"
#include "Host/Lineup/Validation/PromiseGroups.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace lineup::validation {

namespace {

struct Size {
    int width;
    int height;
};

constexpr std::array kSizes = {
    Size{1, 1},     Size{2, 1},     Size{1, 2},     Size{3, 3},     Size{4, 4},      Size{7, 5},
    Size{8, 9},     Size{13, 17},   Size{16, 9},    Size{31, 33},   Size{64, 36},    Size{97, 51},
    Size{320, 180}, Size{719, 485}, Size{720, 486}, Size{720, 576}, Size{1280, 720}, Size{1920, 1080},
    Size{4096, 3},  Size{2, 4320},  Size{1, 32767}, Size{32767, 1},
};

// Where a byte of a frame's row is in the picture.
std::string Place(const FrameShape& shape, int row, std::size_t byte) {
    const std::size_t bytesPerPixel =
        shape.pixelFormat == kPixelFormat_VUYA_32f ? kBytesPerPixel_VUYA_32f : kBytesPerPixel_VUYA_8u;
    return fmt::format("{}, line {}, column {}", Text(shape), shape.height - 1 - row, byte / bytesPerPixel);
}

// The frame was drawn into two buffers that held different bytes: a byte that still holds both fillers
// was not drawn, and every other one must have come out the same.
void RequireSameRow(const FrameShape& shape, int row, std::span<const std::uint8_t> first,
                    std::span<const std::uint8_t> second, std::uint8_t secondFiller) {
    if (std::memcmp(first.data(), second.data(), first.size()) == 0) {
        return;
    }
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (first[i] == shape.filler && second[i] == secondFiller) {
            Fail("{} was left undrawn", Place(shape, row, i));
        }
        if (first[i] != second[i]) {
            Fail("{} is drawn differently the second time", Place(shape, row, i));
        }
    }
}

void RequireFiniteRow(const FrameShape& shape, int row, std::span<const std::uint8_t> bytes) {
    for (std::size_t i = 0; i < bytes.size(); i += sizeof(float)) {
        float value = 0;
        std::memcpy(&value, bytes.data() + i, sizeof value);
        if (!std::isfinite(value)) {
            Fail("{} is not finite", Place(shape, row, i));
        }
    }
}

void RequireGoodFrame(const RawImporter& plugin, const FrameShape& shape) {
    FrameShape otherFiller = shape;
    otherFiller.filler = static_cast<std::uint8_t>(~shape.filler);
    const GuardedFrame first(shape);
    const GuardedFrame second(otherFiller);
    DrawFrame(plugin, first);
    DrawFrame(plugin, second);
    for (int row = 0; row < shape.height; ++row) {
        RequireSameRow(shape, row, first.Row(row), second.Row(row), otherFiller.filler);
        if (shape.pixelFormat == kPixelFormat_VUYA_32f) {
            RequireFiniteRow(shape, row, first.Row(row));
        }
    }
}

void CheckFramesDrawnWhole(Examination& examination) {
    RequirePictures(examination);
    constexpr int kDrawn = 30;
    const RawImporter& plugin = examination.Plugin();
    const std::vector<std::uint32_t> formats = DrawnFormats(plugin);
    if (formats.size() == 1) {
        examination.Warn("it does not draw 8-bit V,U,Y,A (vuyx), which hosts ask for below 720 lines");
    }
    for (const std::uint32_t format : formats) {
        for (const Size& size : kSizes) {
            const int extra = size.width < 32000 ? 37 : 0;  // no frame is wider than 32767
            RequireGoodFrame(plugin, {.width = size.width, .height = size.height, .pixelFormat = format});
            if (size.width * size.height <= 720 * 576) {
                RequireGoodFrame(
                    plugin, {.width = size.width, .height = size.height, .pixelFormat = format, .extraColumns = extra});
            }
        }
    }
    for (int i = 0; i < kDrawn; ++i) {
        RequireGoodFrame(plugin, {.width = 1 + static_cast<int>(examination.Below(400)),
                                  .height = 1 + static_cast<int>(examination.Below(300)),
                                  .pixelFormat = formats.at(examination.Below(formats.size())),
                                  .extraColumns = static_cast<int>(examination.Below(64))});
    }
}

void CheckFrameRecords(Examination& examination) {
    RequirePictures(examination);
    for (const std::uint32_t format : DrawnFormats(examination.Plugin())) {
        for (const Placement& placement : kPlacements) {
            const GuardedFrame frame({.width = 64, .height = 36, .pixelFormat = format});
            DrawFrame(examination.Plugin(), frame, placement);
        }
    }
}

void CheckFrameFormats(Examination& examination) {
    RequirePictures(examination);
    constexpr int kDrawn = 200;
    const RawImporter& plugin = examination.Plugin();
    const GuardedFrame frame({.width = 64, .height = 36});
    const auto requireRefused = [&](std::uint32_t format) {
        if (format == kPixelFormat_VUYA_32f || format == kPixelFormat_VUYA_8u) {
            return;
        }
        const FrameShape shape{.width = 64, .height = 36, .pixelFormat = format};
        const std::int32_t result = SendFrame(plugin, shape, frame.Handle());
        Require(result == kImportUnsupported, "{} ({:#010x}) is answered with {} instead of {}", Text(shape), format,
                result, static_cast<int>(kImportUnsupported));
        Require(frame.IsUntouched(), "{} drew something", Text(shape));
    };
    constexpr std::uint32_t kBgra = 0x61726762;
    for (const std::uint32_t known : {kPixelFormat_VUYA_32f, kPixelFormat_VUYA_8u, kFillFormat_VUYA_8u,
                                      kFillFormat_VUYA_32f, kBgra, 0U, 0xFFFFFFFFU}) {
        requireRefused(known);
        requireRefused(known + 1);
        requireRefused(known ^ 0x20U);
        requireRefused(known ^ 0x80000000U);
    }
    for (int i = 0; i < kDrawn; ++i) {
        requireRefused(static_cast<std::uint32_t>(examination.AnyBits() >> 32U));
    }
}

void CheckFramesOfNoSize(Examination& examination) {
    RequirePictures(examination);
    const RawImporter& plugin = examination.Plugin();
    constexpr std::array kNoSizes = {Size{0, 0},   Size{0, 36},  Size{64, 0},     Size{-1, 36},   Size{64, -1},
                                     Size{-8, -5}, Size{0, -36}, Size{-32768, 3}, Size{3, -32768}};
    for (const std::uint32_t format : DrawnFormats(examination.Plugin())) {
        for (const Size& size : kNoSizes) {
            const GuardedFrame frame({.width = 64, .height = 36, .pixelFormat = format});
            const FrameShape shape{.width = size.width, .height = size.height, .pixelFormat = format};
            const std::int32_t result = SendFrame(plugin, shape, frame.Handle());
            Require(result == kImportNoError, "{} is answered with {} instead of 0", Text(shape), result);
            Require(frame.IsUntouched(), "{} drew something", Text(shape));
        }
    }
}

}  // namespace

std::span<const Promise> FramePromises() {
    static constexpr std::array kRows = {
        Promise{"frames-drawn-whole",
                "A frame of any size is drawn whole, always the same, and not one byte outside it.",
                CheckFramesDrawnWhole},
        Promise{"frame-records", "Frame requests leave their record alone, wherever it lies.", CheckFrameRecords},
        Promise{"frame-formats", "A frame in an unknown pixel format is answered with 3, and nothing is drawn.",
                CheckFrameFormats},
        Promise{"frames-of-no-size", "A frame of no size, or less, is answered with 0, and nothing is drawn.",
                CheckFramesOfNoSize},
    };
    return kRows;
}

}  // namespace lineup::validation
