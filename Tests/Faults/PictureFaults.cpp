// Faults of frames.
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"
#include "Tests/Faults/Faults.h"

#include <cstring>
#include <utility>

namespace faults {

namespace {

// Draws the frame, and then V where U belongs.
std::int32_t SwapChroma(const Request& asked) {
    const std::int32_t result = asked.Rightly();
    const auto& request = asked.As<imImportImageRecEx>();
    if (result != kImportNoError || request.pixelFormat != kPixelFormat_VUYA_8u) {
        return result;
    }
    for (int row = 0; row < request.height; ++row) {
        std::uint8_t* const pixels = request.frame->pixels + std::ptrdiff_t{row} * vexelGetRowbytes(request.frame);
        for (std::ptrdiff_t column = 0; column < request.width; ++column) {
            std::swap(pixels[4 * column], pixels[4 * column + 1]);
        }
    }
    return result;
}

}  // namespace

std::vector<Fault> PictureFaults() {
    return {
        {"LeavesTheTopLine",
         "Leaves the top line of every frame undrawn.",
         kImportImage,
         Changed<imImportImageRecEx>([](imImportImageRecEx& request) {
             request.height = static_cast<std::int16_t>(request.height - (request.height > 1 ? 1 : 0));
         }),
         {{"frames-drawn-whole", "line 0, column 0 was left undrawn"}}},
        {"DrawsPastTheRow",
         "Draws frames a column wider than they are.",
         kImportImage,
         Changed<imImportImageRecEx>([](imImportImageRecEx& request) {
             request.width = static_cast<std::int16_t>(request.width + (request.width < 32767 ? 1 : 0));
         }),
         {{"frames-drawn-whole", "outside of its picture"}}},
        {"DrawsFloatAlone",
         "Refuses to draw frames of 8 bits.",
         kImportImage,
         [](const Request& asked) {
             const bool isFloat = asked.As<imImportImageRecEx>().pixelFormat == kPixelFormat_VUYA_32f;
             return isFloat ? asked.Rightly() : std::int32_t{kImportUnsupported};
         },
         {{"frames-drawn-whole", "does not draw 8-bit V,U,Y,A", "warning"},
          {"frame-records", "", "passed"},
          {"card-bars", "answered with 3 instead of 0"}}},
        {"FrameChangesItsRequest",
         "Marks the record of a frame request as served.",
         kImportImage,
         After<imImportImageRecEx>([](imImportImageRecEx& request) { request.reserved64[0] ^= 0xFF; }),
         {{"frame-records", "changed at byte 64"}}},
        {"DrawsAnyFormat",
         "Draws 8-bit V,U,Y,A where it does not know the pixel format.",
         kImportImage,
         Changed<imImportImageRecEx>([](imImportImageRecEx& request) {
             const bool isFloat = request.pixelFormat == kPixelFormat_VUYA_32f;
             request.pixelFormat = isFloat ? kPixelFormat_VUYA_32f : kPixelFormat_VUYA_8u;
         }),
         {{"frame-formats", "answered with 0 instead of 3"}}},
        {"DrawsFramesOfNoSize",
         "Draws at least one pixel of every frame.",
         kImportImage,
         Before<imImportImageRecEx>([](const imImportImageRecEx& request) {
             if (request.width <= 0) {
                 request.frame->pixels[0] = 0;
             }
         }),
         {{"frames-of-no-size", "drew something"}}},
        {"SwapsTheChroma",
         "Draws the standard-definition card with V and U in each other's place.",
         kImportImage,
         SwapChroma,
         {{"card-bars", "the yellow bar of the standard-definition card"}}},
    };
}

}  // namespace faults
