#include "Host/Lineup/Export/Media/ColourTags.h"

#include <string>

namespace lineup {

namespace {

constexpr int kFewestHdLines = 720;
constexpr int kLinesOf625 = 576;

bool IsHd(int height) {
    return height >= kFewestHdLines;
}

ColourTags VideoTags(int height) {
    // BT.601's curve is BT.709's. Under the newer name every file format keeps it.
    ColourTags tags{AVCOL_PRI_BT709, AVCOL_TRC_BT709, AVCOL_SPC_BT709, AVCOL_RANGE_MPEG, AVCHROMA_LOC_LEFT};
    if (!IsHd(height)) {
        const bool is625 = height == kLinesOf625;
        tags.primaries = is625 ? AVCOL_PRI_BT470BG : AVCOL_PRI_SMPTE170M;
        tags.matrix = is625 ? AVCOL_SPC_BT470BG : AVCOL_SPC_SMPTE170M;
    }
    return tags;
}

}  // namespace

ColourTags TagsFor(const VideoCodec& codec, int height) {
    ColourTags tags = VideoTags(height);
    switch (codec.colour) {
        case ColourKind::Video:
            break;
        case ColourKind::Jpeg:
            tags.matrix = AVCOL_SPC_BT470BG;
            tags.range = AVCOL_RANGE_JPEG;
            tags.chroma = AVCHROMA_LOC_CENTER;
            break;
        case ColourKind::Rgb:
            tags.matrix = AVCOL_SPC_RGB;
            tags.range = AVCOL_RANGE_JPEG;
            tags.chroma = AVCHROMA_LOC_UNSPECIFIED;
            break;
    }
    return tags;
}

PlaneFormat PlanesFor(const VideoCodec& codec, int height) {
    const AVPixFmtDescriptor* const pixels = av_pix_fmt_desc_get(PixelFormat(codec));
    PlaneFormat format;
    format.bits = pixels->comp[0].depth;
    format.subsampleWidth = pixels->log2_chroma_w;
    format.subsampleHeight = pixels->log2_chroma_h;
    format.fullRange = codec.colour != ColourKind::Video;
    format.chromaCentred = codec.colour == ColourKind::Jpeg;
    if (codec.colour == ColourKind::Rgb) {
        format.coding = ColourCoding::Rgb;
    } else {
        format.coding = codec.colour == ColourKind::Video && IsHd(height) ? ColourCoding::Ycc709 : ColourCoding::Ycc601;
    }
    return format;
}

AVPixelFormat PixelFormat(const VideoCodec& codec) {
    return av_get_pix_fmt(std::string(codec.pixelFormat).c_str());
}

}  // namespace lineup
