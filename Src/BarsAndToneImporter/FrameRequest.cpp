#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/ColourBarTables.h"

#include <algorithm>
#include <array>

namespace {

// A frame of the request, addressed by picture columns and by memory rows from the bottom up.
struct Canvas {
    vexel frame;
    int width;
    int height;
    std::uint32_t fillFormat;
    int bytesPerPixel;

    // The address is worked out as an integer: a frame of no size may have no pixels at all.
    void Fill(int column, int memoryRow, int columns, int rows, const void* colour, std::uint32_t colourFormat) const {
        const std::intptr_t offset = static_cast<std::intptr_t>(vexelGetRowbytes(frame)) * memoryRow +
                                     static_cast<std::intptr_t>(bytesPerPixel) * column;
        const std::intptr_t start = reinterpret_cast<std::intptr_t>(frame->pixels) + offset;
        IR_FillWithColor(reinterpret_cast<void*>(start), vexelGetRowbytes(frame), columns, rows, fillFormat, colour,
                         colourFormat);
    }
};

// A rectangle's edges in whole pixels, truncated; rectangles that share an edge share its pixel.
struct PixelRect {
    std::int16_t left;
    std::int16_t top;
    std::int16_t right;
    std::int16_t bottom;

    [[nodiscard]] int Columns() const { return right - left; }
    [[nodiscard]] int Rows() const { return bottom - top; }
};

PixelRect ToPixels(const BarRect& rect, int width, int height) {
    const auto edge = [](double fraction, int size) { return static_cast<std::int16_t>(fraction * size); };
    return {edge(rect.x0, width), edge(rect.y0, height), edge(rect.x1, width), edge(rect.y1, height)};
}

// Luma rises from 0 at the left edge to 1 at the right one. The ramp draws one column past its edge;
// the white bar that follows it in the card repaints that column.
void DrawRamp(const Canvas& canvas, const PixelRect& rect) {
    const int columns = rect.Columns();
    if (columns < 0) {
        return;
    }
    const auto lumaStep = static_cast<float>(1.0 / columns);
    for (int c = 0; c <= columns; ++c) {
        const std::array<float, 4> colour = {0.0F, 0.0F, static_cast<float>(c) * lumaStep, 1.0F};
        const int column = rect.left + c;
        const int width = std::clamp(canvas.width - column, 0, 1);  // a frame of no width has no column
        canvas.Fill(column, canvas.height - rect.bottom, width, rect.Rows(), colour.data(), kFillFormat_VUYA_32f);
    }
}

void DrawCard(const Canvas& canvas, const BarTable& table) {
    for (const BarRect& bar : table) {
        if (bar.y1 == 0.0) {
            break;
        }
        const PixelRect rect = ToPixels(bar, canvas.width, canvas.height);
        if (canvas.fillFormat == kFillFormat_VUYA_32f && bar.colour == kRampColour) {
            DrawRamp(canvas, rect);
        } else {
            canvas.Fill(rect.left, canvas.height - rect.bottom, rect.Columns(), rect.Rows(), bar.colour.data(),
                        kFillFormat_VUYA_8u);
        }
    }
}

}  // namespace

std::int32_t barsImportImage(imImportImageRecEx* request) {
    Canvas canvas{.frame = request->frame,
                  .width = request->width,
                  .height = request->height,
                  .fillFormat = kFillFormat_VUYA_8u,
                  .bytesPerPixel = kBytesPerPixel_VUYA_8u};
    switch (request->pixelFormat) {
        case kPixelFormat_VUYA_8u:
            DrawCard(canvas, NTSCYuvTable);
            return kImportNoError;
        case kPixelFormat_VUYA_32f:
            canvas.fillFormat = kFillFormat_VUYA_32f;
            canvas.bytesPerPixel = kBytesPerPixel_VUYA_32f;
            DrawCard(canvas, HDYuvTable);
            return kImportNoError;
        default:
            return kImportUnsupported;
    }
}
