#include "Bridges/GStreamer/PictureBuffer.h"

#include <lineup/Card.h>
#include <lineup/Error.h>
#include "Bridges/GStreamer/PicturePacking.h"
#include "Bridges/GStreamer/VideoFormats.h"
#include "Host/Lineup/Picture/ConvertedPicture.h"

#include <new>

namespace gstreamer {

namespace {

lineup::ColourCoding CodingOf(const GstVideoInfo& info) {
    switch (info.colorimetry.matrix) {
        case GST_VIDEO_COLOR_MATRIX_RGB:
            return lineup::ColourCoding::Rgb;
        case GST_VIDEO_COLOR_MATRIX_BT709:
            return lineup::ColourCoding::Ycc709;
        default:
            return lineup::ColourCoding::Ycc601;
    }
}

lineup::PlaneFormat PlanesOf(const GstVideoInfo& info) {
    const GstVideoFormatInfo& format = *info.finfo;
    return {.coding = CodingOf(info),
            .bits = static_cast<int>(GST_VIDEO_FORMAT_INFO_DEPTH(&format, 0)),
            .fullRange = info.colorimetry.range == GST_VIDEO_COLOR_RANGE_0_255,
            .subsampleWidth = static_cast<int>(GST_VIDEO_FORMAT_INFO_W_SUB(&format, 1)),
            .subsampleHeight = static_cast<int>(GST_VIDEO_FORMAT_INFO_H_SUB(&format, 1)),
            .interlaced = GST_VIDEO_INFO_IS_INTERLACED(&info) != FALSE,
            .chromaCentred = info.chroma_site == GST_VIDEO_CHROMA_SITE_JPEG};
}

/// A frame that is open for writing.
class OpenFrame {
public:
    OpenFrame(const GstVideoInfo& info, GstBuffer& buffer) {
        if (gst_video_frame_map(&mFrame, &info, &buffer, GST_MAP_WRITE) == FALSE) {
            throw std::bad_alloc();
        }
    }
    ~OpenFrame() { gst_video_frame_unmap(&mFrame); }
    OpenFrame(const OpenFrame&) = delete;
    OpenFrame& operator=(const OpenFrame&) = delete;

    [[nodiscard]] GstVideoFrame& Get() noexcept { return mFrame; }

private:
    GstVideoFrame mFrame{};
};

}  // namespace

Buffer DrawPicture(const lineup::Clip& clip, lineup::Card card, const GstVideoInfo& info) {
    RequireColorimetry(info);
    const lineup::ConvertedPicture picture(
        lineup::ReadPicture(clip, GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info), card), PlanesOf(info));
    Buffer buffer(gst_buffer_new_allocate(nullptr, info.size, nullptr));
    if (!buffer) {
        throw std::bad_alloc();
    }
    gst_buffer_memset(buffer.get(), 0, 0, info.size);
    {
        OpenFrame frame(info, *buffer);
        PackPicture(picture, frame.Get());
    }
    GST_MINI_OBJECT_FLAG_SET(gst_buffer_peek_memory(buffer.get(), 0), GST_MEMORY_FLAG_READONLY);
    return buffer;
}

}  // namespace gstreamer
