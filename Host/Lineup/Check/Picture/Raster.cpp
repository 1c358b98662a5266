#include "Host/Lineup/Check/Picture/Raster.h"

#include <algorithm>
#include <cmath>

namespace lineup::picture {

namespace {

// Chroma lies on the left one of its two pixels and between its two lines unless the file says otherwise; where it says
// nothing, that is MPEG-2's and H.264's way. With lines of its own it is never between them.
void PlaceChroma(const decoding::Frame& head, Plane& plane) {
    const std::string_view place(head.chromaPlace.data());
    const bool isCentred = place == "center" || place == "top" || place == "bottom";
    const bool isTop = place.starts_with("top");
    const bool isBottom = place.starts_with("bottom");
    plane.offsetX = isCentred ? (plane.stepX - 1) / 2.0 : 0;
    plane.offsetY = isTop ? 0 : isBottom ? plane.stepY - 1 : (plane.stepY - 1) / 2.0;
}

}  // namespace

Raster MakeRaster(const DecodedPicture& picture) {
    const decoding::Frame& head = picture.head;
    Raster raster{.width = static_cast<int>(head.width),
                  .height = static_cast<int>(head.height),
                  .bits = static_cast<int>(head.bits),
                  .isRgb = (head.flags & decoding::kRgbFrame) != 0,
                  .planes = {}};
    // Limited range is scaled by powers of two from depth to depth, full range by its greatest code.
    const auto greatest = static_cast<float>((1U << head.bits) - 1U);
    const float scale = raster.isRgb ? 255.0F / greatest : std::ldexp(1.0F, 8 - raster.bits);
    for (std::uint32_t p = 0; p < head.planes; ++p) {
        Plane plane;
        plane.stepX = p == 0 ? 1 : 1 << head.subsampleWidth;
        plane.stepY = p == 0 ? 1 : 1 << head.subsampleHeight;
        plane.width = (raster.width + plane.stepX - 1) / plane.stepX;
        plane.height = (raster.height + plane.stepY - 1) / plane.stepY;
        PlaceChroma(head, plane);
        plane.scale = scale;
        plane.codes = picture.planes.at(p);
        raster.planes.push_back(plane);
    }
    return raster;
}

SmallRaster MakeSmall(const Raster& raster, int most) {
    const int step = std::max(1, (std::max(raster.width, raster.height) + most - 1) / most);
    SmallRaster small{
        .width = std::max(1, raster.width / step), .height = std::max(1, raster.height / step), .planes = {}};
    for (std::size_t p = 0; p < small.planes.size(); ++p) {
        const Plane& from = raster.PlaneOf(p);
        std::vector<float>& values = small.planes.at(p);
        values.reserve(static_cast<std::size_t>(small.width) * static_cast<std::size_t>(small.height));
        for (int y = 0; y < small.height; ++y) {
            const int top = std::min(y * step / from.stepY, from.height - 1);
            const int bottom = std::clamp((y + 1) * step / from.stepY, top + 1, from.height);
            for (int x = 0; x < small.width; ++x) {
                const int left = std::min(x * step / from.stepX, from.width - 1);
                const int right = std::clamp((x + 1) * step / from.stepX, left + 1, from.width);
                float sum = 0;
                for (int line = top; line < bottom; ++line) {
                    for (int column = left; column < right; ++column) {
                        sum += from.At(column, line);
                    }
                }
                values.push_back(sum / static_cast<float>((bottom - top) * (right - left)));
            }
        }
    }
    return small;
}

}  // namespace lineup::picture
