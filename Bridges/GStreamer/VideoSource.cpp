#include "Bridges/GStreamer/VideoSource.h"

#include <lineup/Error.h>
#include <lineup/Limits.h>
#include <lineup/PictureFormat.h>
#include "Bridges/GStreamer/Importers.h"
#include "Bridges/GStreamer/PictureBuffer.h"
#include "Bridges/GStreamer/Properties.h"
#include "Bridges/GStreamer/VideoFormats.h"
#include "Host/Lineup/Values/PictureShape.h"

#include <fmt/format.h>

#include <array>
#include <string>

namespace gstreamer {

namespace {

enum VideoProperty : guint { kCard = 1 };

constexpr lineup::PictureFormat kUsual;

// Fields of 4:2:0 have chroma of their own lines: two a field.
constexpr int kInterlaced420Step = 4;

void DescribeVideo(GstElementClass& type) {
    gst_element_class_set_static_metadata(&type, "Colour bars", "Source/Video",
                                          "Draws the card of a line-up clip: colour bars for high and standard "
                                          "definition",
                                          "Bars and Tone");
    const Caps caps = VideoSource::Possible();
    gst_element_class_add_pad_template(&type, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps.get()));
    gst_type_mark_as_plugin_api(CardEnum(), GstPluginAPIFlags{});
    InstallProperty(type.parent_class.parent_class, kCard,
                    g_param_spec_enum("card", "Card", "Which of the two cards the picture shows", CardEnum(),
                                      static_cast<gint>(lineup::Card::Auto), kReadWrite));
}

// 525 lines, in any of its rasters.
bool IsBottomFirst(int height) {
    return height == 480 || height == 486;
}

/// Takes `usual` for a field that was left open, and where it is not among what is offered, the first that is.
void ChooseText(GstStructure& structure, const char* field, const char* usual) {
    if (gst_structure_has_field(&structure, field) == FALSE) {
        gst_structure_set(&structure, field, G_TYPE_STRING, usual, nullptr);
    } else {
        gst_structure_fixate_field_string(&structure, field, usual);
    }
}

void ChooseColours(GstStructure& structure, GstVideoFormat format, int height) {
    const GstVideoColorimetry colorimetry = UsualColorimetry(format, height);
    const Text name(gst_video_colorimetry_to_string(&colorimetry));
    ChooseText(structure, "colorimetry", name.get());
    if (GST_VIDEO_FORMAT_INFO_W_SUB(gst_video_format_get_info(format), 1) > 0) {
        ChooseText(structure, "chroma-site", "mpeg2");
    }
}

void ChooseShape(GstStructure& structure, int width, int height) {
    const lineup::Rational pixel = lineup::ShapeOf(width, height, lineup::PictureAspect::Auto).sampleAspect;
    if (gst_structure_has_field(&structure, "pixel-aspect-ratio") == FALSE) {
        gst_structure_set(&structure, "pixel-aspect-ratio", GST_TYPE_FRACTION, pixel.num, pixel.den, nullptr);
    } else {
        gst_structure_fixate_field_nearest_fraction(&structure, "pixel-aspect-ratio", pixel.num, pixel.den);
    }
}

}  // namespace

Caps VideoSource::Possible() {
    const auto formats = VideoFormats();
    Caps caps(gst_video_make_raw_caps(formats.data(), static_cast<guint>(formats.size())));
    gst_caps_set_simple(caps.get(), "width", GST_TYPE_INT_RANGE, 1, lineup::PictureFormat::kMostSize, "height",
                        GST_TYPE_INT_RANGE, 1, lineup::PictureFormat::kMostSize, "framerate", GST_TYPE_FRACTION_RANGE,
                        lineup::kLowestFrameRate, 1, lineup::kHighestFrameRate, 1, nullptr);
    const Caps interlaced(gst_caps_copy(caps.get()));
    gst_caps_set_simple(caps.get(), "interlace-mode", G_TYPE_STRING, "progressive", nullptr);
    gst_caps_set_simple(interlaced.get(), "interlace-mode", G_TYPE_STRING, "interleaved", nullptr);
    gst_caps_append(caps.get(), gst_caps_copy(interlaced.get()));
    return caps;
}

void VideoSource::Set(guint, const GValue& value) {
    mCard = static_cast<lineup::Card>(g_value_get_enum(&value));
}

void VideoSource::Get(guint, GValue& value) const {
    g_value_set_enum(&value, static_cast<gint>(mCard));
}

void VideoSource::Open(const std::string& plugin) {
    mClip.emplace(ImporterAt(plugin));
}

void VideoSource::Close() noexcept {
    mPicture.reset();
    mClip.reset();
}

Caps VideoSource::Offered() const {
    return Possible();
}

Caps VideoSource::Chosen(Caps caps) const {
    GstStructure& structure = *gst_caps_get_structure(caps.get(), 0);
    gst_structure_fixate_field_nearest_int(&structure, "width", kUsual.width);
    gst_structure_fixate_field_nearest_int(&structure, "height", kUsual.height);
    gst_structure_fixate_field_nearest_fraction(&structure, "framerate", kUsual.frameRate.num, kUsual.frameRate.den);
    gst_structure_fixate_field(&structure, "format");
    ChooseText(structure, "interlace-mode", "progressive");
    int width = 0;
    int height = 0;
    gst_structure_get_int(&structure, "width", &width);
    gst_structure_get_int(&structure, "height", &height);
    if (std::string_view(gst_structure_get_string(&structure, "interlace-mode")) == "interleaved") {
        ChooseText(structure, "field-order", IsBottomFirst(height) ? "bottom-field-first" : "top-field-first");
    }
    ChooseShape(structure, width, height);
    ChooseColours(structure, gst_video_format_from_string(gst_structure_get_string(&structure, "format")), height);
    return caps;
}

void VideoSource::Take(const GstCaps& caps) {
    GstVideoInfo info{};
    if (gst_video_info_from_caps(&info, &caps) == FALSE) {
        throw lineup::Error("the picture that is asked for has a format that no clip can have");
    }
    const bool interlaced = GST_VIDEO_INFO_IS_INTERLACED(&info) != FALSE;
    const bool is420 = GST_VIDEO_FORMAT_INFO_H_SUB(info.finfo, 1) > 0;
    if (interlaced && is420 && GST_VIDEO_INFO_HEIGHT(&info) % kInterlaced420Step != 0) {
        throw lineup::Error(fmt::format("height {}: must be a multiple of {} for interlaced 4:2:0",
                                        GST_VIDEO_INFO_HEIGHT(&info), kInterlaced420Step));
    }
    mPicture = DrawPicture(*mClip, mCard, info);
    if (interlaced) {
        GST_BUFFER_FLAG_SET(mPicture.get(), GST_VIDEO_BUFFER_FLAG_INTERLACED);
        if (GST_VIDEO_INFO_FIELD_ORDER(&info) == GST_VIDEO_FIELD_ORDER_TOP_FIELD_FIRST) {
            GST_BUFFER_FLAG_SET(mPicture.get(), GST_VIDEO_BUFFER_FLAG_TFF);
        }
    }
    mFrameRate = {GST_VIDEO_INFO_FPS_N(&info), GST_VIDEO_INFO_FPS_D(&info)};
}

Grid VideoSource::Units() const {
    return Grid(mFrameRate);
}

Buffer VideoSource::Make(std::int64_t, std::int64_t) {
    return Buffer(gst_buffer_copy(mPicture.get()));
}

constexpr ElementKind VideoSource::kElement = {"LineupVideoSrc", DescribeVideo,
                                               [] { return std::unique_ptr<Source>(new VideoSource); }};

}  // namespace gstreamer
