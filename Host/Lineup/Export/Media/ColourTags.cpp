#include "Host/Lineup/Export/Media/ColourTags.h"

#include "Host/Lineup/Export/Formats/ColourMatrix.h"

#include <string>

namespace lineup {

namespace {

AVColorPrimaries PrimariesOf(ColourMatrix matrix) {
    switch (matrix) {
        case ColourMatrix::Bt470bg:
            return AVCOL_PRI_BT470BG;
        case ColourMatrix::Smpte170m:
            return AVCOL_PRI_SMPTE170M;
        case ColourMatrix::Bt709:
        case ColourMatrix::Rgb:
            break;
    }
    return AVCOL_PRI_BT709;
}

AVColorSpace SpaceOf(ColourMatrix matrix) {
    switch (matrix) {
        case ColourMatrix::Bt709:
            return AVCOL_SPC_BT709;
        case ColourMatrix::Bt470bg:
            return AVCOL_SPC_BT470BG;
        case ColourMatrix::Smpte170m:
            return AVCOL_SPC_SMPTE170M;
        case ColourMatrix::Rgb:
            break;
    }
    return AVCOL_SPC_RGB;
}

ColourCoding CodingOf(ColourMatrix matrix) {
    switch (matrix) {
        case ColourMatrix::Bt709:
            return ColourCoding::Ycc709;
        case ColourMatrix::Rgb:
            return ColourCoding::Rgb;
        case ColourMatrix::Bt470bg:
        case ColourMatrix::Smpte170m:
            break;
    }
    return ColourCoding::Ycc601;
}

AVChromaLocation ChromaOf(ColourKind colour) {
    switch (colour) {
        case ColourKind::Video:
            return AVCHROMA_LOC_LEFT;
        case ColourKind::Jpeg:
            return AVCHROMA_LOC_CENTER;
        case ColourKind::Rgb:
            break;
    }
    return AVCHROMA_LOC_UNSPECIFIED;
}

}  // namespace

ColourTags TagsFor(const VideoEncoding& encoding, int height) {
    ColourTags tags{};
    tags.primaries = PrimariesOf(MatrixOfLines(height));
    // BT.601's curve is BT.709's. Under the newer name every file format keeps it.
    tags.transfer = AVCOL_TRC_BT709;
    tags.matrix = SpaceOf(MatrixFor(encoding.colour, height));
    tags.range = encoding.colour == ColourKind::Video ? AVCOL_RANGE_MPEG : AVCOL_RANGE_JPEG;
    tags.chroma = ChromaOf(encoding.colour);
    return tags;
}

PlaneFormat PlanesFor(const VideoEncoding& encoding, int height) {
    const AVPixFmtDescriptor* const pixels = av_pix_fmt_desc_get(PixelFormat(encoding));
    PlaneFormat format;
    format.bits = pixels->comp[0].depth;
    format.subsampleWidth = pixels->log2_chroma_w;
    format.subsampleHeight = pixels->log2_chroma_h;
    format.fullRange = encoding.colour != ColourKind::Video;
    format.chromaCentred = encoding.colour == ColourKind::Jpeg;
    format.coding = CodingOf(MatrixFor(encoding.colour, height));
    return format;
}

AVPixelFormat PixelFormat(const VideoEncoding& encoding) {
    return av_get_pix_fmt(std::string(encoding.pixelFormat).c_str());
}

}  // namespace lineup
