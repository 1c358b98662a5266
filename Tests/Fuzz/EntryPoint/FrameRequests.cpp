#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Lineup/Validation/Probes/GuardedFrame.h"
#include "Tests/Fuzz/EntryPoint/Session.h"
#include "Tests/Fuzz/Support/Require.h"
#include "Tests/Support/Importer.h"

#include <algorithm>
#include <array>

namespace fuzz {

namespace {

constexpr std::array<std::int16_t, 16> kSizes = {0, 1, 2, 3, 7, 8, 9, 16, 63, 100, 128, 255, -1, -2, -32768, -100};

// A pixel of the card is never all filler: it was drawn.
bool EveryPixelIsDrawn(const lineup::validation::GuardedFrame& frame, int height, std::ptrdiff_t bytesPerPixel) {
    for (int y = 0; y < height; ++y) {
        const auto line = frame.Row(y);
        for (auto pixel = line.begin(); pixel != line.end(); pixel += bytesPerPixel) {
            if (std::all_of(pixel, pixel + bytesPerPixel, [](std::uint8_t byte) { return byte == 0xCC; })) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

void Session::DrawFrame() {
    constexpr std::array kFormats = {kPixelFormat_VUYA_32f, kPixelFormat_VUYA_8u, std::uint32_t{0},
                                     kPixelFormat_VUYA_32f + 1};
    const std::int16_t width = mBytes.Pick(kSizes);
    const std::int16_t height = mBytes.Pick(kSizes);
    const std::uint32_t format = mBytes.Pick(kFormats);
    const bool known = format == kPixelFormat_VUYA_32f || format == kPixelFormat_VUYA_8u;
    const bool isFloat = format == kPixelFormat_VUYA_32f;
    const int bytesPerPixel = isFloat ? kBytesPerPixel_VUYA_32f : kBytesPerPixel_VUYA_8u;
    lineup::validation::GuardedFrame frame({.width = std::max<int>(width, 1),
                                            .height = std::max<int>(height, 1),
                                            .pixelFormat = known ? format : kPixelFormat_VUYA_8u});
    test::RequestRecord record(test::kImageRecordSize, TakePlacement());
    record.Put(4, width).Put(8, height).Put(60, format).Put(228, frame.Handle());
    const std::int32_t result = test::Request(kImportImage, nullptr, record.Data());
    Require(record.IsUntouched(), "a frame request only reads its record");
    Require(result == (known ? 0 : 3), "the two pixel formats are drawn");
    if (!known || width <= 0 || height <= 0) {
        Require(frame.IsUntouched(), "a frame of no size or of another format is left alone");
        return;
    }
    Require(frame.WrittenOutside().empty(), "nothing is drawn beside the frame");
    Require(EveryPixelIsDrawn(frame, height, bytesPerPixel), "every pixel of a frame is drawn");
}

}  // namespace fuzz
