#include "Bridges/GStreamer/PicturePacking.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace gstreamer {

namespace {

// What the framework packs lines from: alpha and three values a pixel.
constexpr std::size_t kComponents = 4;

std::size_t Size(int size) {
    return static_cast<std::size_t>(size);
}

/// The line of the chroma planes that picture line `y` takes its chroma from.
std::size_t ChromaLine(std::size_t y, const GstVideoFrame& frame) {
    if (GST_VIDEO_FORMAT_INFO_H_SUB(frame.info.finfo, 1) == 0) {
        return y;
    }
    // Each field has chroma of its own lines, two of them a line.
    return GST_VIDEO_INFO_IS_INTERLACED(&frame.info) != FALSE ? y / 4 * 2 + y % 2 : y / 2;
}

/// Fills `line` with the values of picture line `y`, in the upper bits of a Value.
template <class Value>
void FillLine(std::vector<Value>& line, const lineup::ConvertedPicture& picture, const GstVideoFrame& frame,
              std::size_t y) {
    const GstVideoFormatInfo& format = *frame.info.finfo;
    const unsigned shift = std::numeric_limits<Value>::digits - format.depth[0];
    const std::size_t chromaLine = ChromaLine(y, frame);
    for (std::size_t x = 0; x < line.size() / kComponents; ++x) {
        Value* const pixel = line.data() + x * kComponents;
        pixel[0] = std::numeric_limits<Value>::max();
        for (std::size_t plane = 0; plane < lineup::ConvertedPicture::kPlanes; ++plane) {
            const std::size_t column = plane == 0 ? x : x >> format.w_sub[1];
            pixel[plane + 1] = static_cast<Value>(picture.Value(plane, plane == 0 ? y : chromaLine, column) << shift);
        }
    }
}

template <class Value>
void PackLines(const lineup::ConvertedPicture& picture, GstVideoFrame& frame) {
    const GstVideoFormatInfo& format = *frame.info.finfo;
    const int width = GST_VIDEO_FRAME_WIDTH(&frame);
    const bool interlaced = GST_VIDEO_INFO_IS_INTERLACED(&frame.info) != FALSE;
    const auto flags = interlaced ? GST_VIDEO_PACK_FLAG_INTERLACED : GST_VIDEO_PACK_FLAG_NONE;
    std::vector<Value> line(Size(width) * kComponents);
    for (int y = 0; y < GST_VIDEO_FRAME_HEIGHT(&frame); ++y) {
        FillLine(line, picture, frame, Size(y));
        format.pack_func(&format, flags, line.data(), 0, frame.data, frame.info.stride, GST_VIDEO_CHROMA_SITE_UNKNOWN,
                         y, width);
    }
}

}  // namespace

void PackPicture(const lineup::ConvertedPicture& picture, GstVideoFrame& frame) {
    const GstVideoFormatInfo& whole = *gst_video_format_get_info(frame.info.finfo->unpack_format);
    if (whole.depth[0] > std::numeric_limits<std::uint8_t>::digits) {
        PackLines<std::uint16_t>(picture, frame);
    } else {
        PackLines<std::uint8_t>(picture, frame);
    }
}

}  // namespace gstreamer
