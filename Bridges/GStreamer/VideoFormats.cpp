#include "Bridges/GStreamer/VideoFormats.h"

#include <lineup/Card.h>
#include <lineup/Error.h>
#include "Bridges/GStreamer/Handles.h"
#include "Host/Lineup/Export/Formats/ColourMatrix.h"

#include <fmt/format.h>

#include <array>

namespace gstreamer {

namespace {

constexpr std::array kVideoFormats = {
    // 8 bits, 4:2:2 and 4:2:0
    GST_VIDEO_FORMAT_UYVY,
    GST_VIDEO_FORMAT_YUY2,
    GST_VIDEO_FORMAT_YVYU,
    GST_VIDEO_FORMAT_VYUY,
    GST_VIDEO_FORMAT_I420,
    GST_VIDEO_FORMAT_YV12,
    GST_VIDEO_FORMAT_NV12,
    GST_VIDEO_FORMAT_NV21,
    GST_VIDEO_FORMAT_Y42B,
    GST_VIDEO_FORMAT_NV16,
    // 10 bits
    GST_VIDEO_FORMAT_v210,
    GST_VIDEO_FORMAT_UYVP,
    GST_VIDEO_FORMAT_Y210,
    GST_VIDEO_FORMAT_I422_10LE,
    GST_VIDEO_FORMAT_I422_10BE,
    GST_VIDEO_FORMAT_I420_10LE,
    GST_VIDEO_FORMAT_I420_10BE,
    GST_VIDEO_FORMAT_P010_10LE,
    GST_VIDEO_FORMAT_P010_10BE,
    GST_VIDEO_FORMAT_NV16_10LE32,
    GST_VIDEO_FORMAT_NV12_10LE32,
    // 12 and 16 bits
    GST_VIDEO_FORMAT_I422_12LE,
    GST_VIDEO_FORMAT_I422_12BE,
    GST_VIDEO_FORMAT_I420_12LE,
    GST_VIDEO_FORMAT_I420_12BE,
    GST_VIDEO_FORMAT_Y212_LE,
    GST_VIDEO_FORMAT_Y212_BE,
    GST_VIDEO_FORMAT_P012_LE,
    GST_VIDEO_FORMAT_P012_BE,
    GST_VIDEO_FORMAT_v216,
    GST_VIDEO_FORMAT_P016_LE,
    GST_VIDEO_FORMAT_P016_BE,
    // 4:4:4, and what has room for alpha
    GST_VIDEO_FORMAT_AYUV64,
    GST_VIDEO_FORMAT_AYUV,
    GST_VIDEO_FORMAT_VUYA,
    GST_VIDEO_FORMAT_A420,
    GST_VIDEO_FORMAT_AV12,
    GST_VIDEO_FORMAT_Y444,
    GST_VIDEO_FORMAT_NV24,
    GST_VIDEO_FORMAT_v308,
    GST_VIDEO_FORMAT_IYU2,
    GST_VIDEO_FORMAT_Y410,
    GST_VIDEO_FORMAT_Y444_10LE,
    GST_VIDEO_FORMAT_Y444_10BE,
    GST_VIDEO_FORMAT_A444_10LE,
    GST_VIDEO_FORMAT_A422_10LE,
    GST_VIDEO_FORMAT_A420_10LE,
    GST_VIDEO_FORMAT_Y444_12LE,
    GST_VIDEO_FORMAT_Y444_12BE,
    GST_VIDEO_FORMAT_Y412_LE,
    GST_VIDEO_FORMAT_Y412_BE,
    GST_VIDEO_FORMAT_Y444_16LE,
    GST_VIDEO_FORMAT_Y444_16BE,
    // R'G'B'
    GST_VIDEO_FORMAT_BGRx,
    GST_VIDEO_FORMAT_RGBx,
    GST_VIDEO_FORMAT_xRGB,
    GST_VIDEO_FORMAT_xBGR,
    GST_VIDEO_FORMAT_BGRA,
    GST_VIDEO_FORMAT_RGBA,
    GST_VIDEO_FORMAT_ARGB,
    GST_VIDEO_FORMAT_ABGR,
    GST_VIDEO_FORMAT_RGB,
    GST_VIDEO_FORMAT_BGR,
    GST_VIDEO_FORMAT_GBR,
    GST_VIDEO_FORMAT_GBRA,
    GST_VIDEO_FORMAT_RGBP,
    GST_VIDEO_FORMAT_BGRP,
    GST_VIDEO_FORMAT_r210,
    GST_VIDEO_FORMAT_RGB10A2_LE,
    GST_VIDEO_FORMAT_BGR10A2_LE,
    GST_VIDEO_FORMAT_GBR_10LE,
    GST_VIDEO_FORMAT_GBR_10BE,
    GST_VIDEO_FORMAT_GBRA_10LE,
    GST_VIDEO_FORMAT_GBR_12LE,
    GST_VIDEO_FORMAT_GBR_12BE,
    GST_VIDEO_FORMAT_GBRA_12LE,
    GST_VIDEO_FORMAT_ARGB64,
    GST_VIDEO_FORMAT_ARGB64_LE,
    GST_VIDEO_FORMAT_ARGB64_BE,
    GST_VIDEO_FORMAT_RGBA64_LE,
    GST_VIDEO_FORMAT_RGBA64_BE,
    GST_VIDEO_FORMAT_BGRA64_LE,
    GST_VIDEO_FORMAT_BGRA64_BE,
    GST_VIDEO_FORMAT_ABGR64_LE,
    GST_VIDEO_FORMAT_ABGR64_BE,
};

constexpr int kLinesOf625 = 576;

bool IsRgb(GstVideoFormat format) {
    return GST_VIDEO_FORMAT_INFO_IS_RGB(gst_video_format_get_info(format)) != FALSE;
}

}  // namespace

std::span<const GstVideoFormat> VideoFormats() {
    return kVideoFormats;
}

GstVideoColorimetry UsualColorimetry(GstVideoFormat format, int height) {
    if (IsRgb(format)) {
        return {GST_VIDEO_COLOR_RANGE_0_255, GST_VIDEO_COLOR_MATRIX_RGB, GST_VIDEO_TRANSFER_SRGB,
                GST_VIDEO_COLOR_PRIMARIES_BT709};
    }
    if (lineup::MatrixFor(lineup::ColourKind::Video, height) == lineup::ColourMatrix::Bt709) {
        return {GST_VIDEO_COLOR_RANGE_16_235, GST_VIDEO_COLOR_MATRIX_BT709, GST_VIDEO_TRANSFER_BT709,
                GST_VIDEO_COLOR_PRIMARIES_BT709};
    }
    return {GST_VIDEO_COLOR_RANGE_16_235, GST_VIDEO_COLOR_MATRIX_BT601, GST_VIDEO_TRANSFER_BT601,
            height == kLinesOf625 ? GST_VIDEO_COLOR_PRIMARIES_BT470BG : GST_VIDEO_COLOR_PRIMARIES_SMPTE170M};
}

void RequireColorimetry(const GstVideoInfo& info) {
    const GstVideoColorMatrix matrix = info.colorimetry.matrix;
    const bool possible = IsRgb(GST_VIDEO_INFO_FORMAT(&info))
                              ? matrix == GST_VIDEO_COLOR_MATRIX_RGB
                              : matrix == GST_VIDEO_COLOR_MATRIX_BT601 || matrix == GST_VIDEO_COLOR_MATRIX_BT709;
    if (!possible) {
        const Text name(gst_video_colorimetry_to_string(&info.colorimetry));
        throw lineup::Error(fmt::format("colorimetry {}: the matrix must be that of bt601 or bt709, or sRGB for R'G'B'",
                                        name ? name.get() : "unknown"));
    }
}

}  // namespace gstreamer
