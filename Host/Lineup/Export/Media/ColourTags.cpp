#include "Host/Lineup/Export/Media/ColourTags.h"

#include <lineup/Card.h>
#include "Host/Lineup/Export/Formats/ColourMatrix.h"

#include <string>

namespace lineup {

namespace {

constexpr int kLinesOf625 = 576;

// R'G'B' goes to a computer's screen as it is, whose primaries are HD's.
AVColorPrimaries PrimariesOf(ColourKind colour, int height) {
    if (colour == ColourKind::Rgb || height >= kFewestHdLines) {
        return AVCOL_PRI_BT709;
    }
    return height == kLinesOf625 ? AVCOL_PRI_BT470BG : AVCOL_PRI_SMPTE170M;
}

// BT.601's curve is BT.709's. Under the newer name every file format keeps it.
AVColorTransferCharacteristic TransferOf(ColourKind colour) {
    return colour == ColourKind::Rgb ? AVCOL_TRC_IEC61966_2_1 : AVCOL_TRC_BT709;
}

AVColorSpace SpaceOf(ColourMatrix matrix) {
    switch (matrix) {
        case ColourMatrix::Bt709:
            return AVCOL_SPC_BT709;
        case ColourMatrix::Bt601:
            return AVCOL_SPC_SMPTE170M;
        case ColourMatrix::Jpeg:
            return AVCOL_SPC_BT470BG;
        case ColourMatrix::Rgb:
            break;
    }
    return AVCOL_SPC_BT709;  // R'G'B' has none; QuickTime wants one that it knows, and takes no heed of it
}

ColourCoding CodingOf(ColourMatrix matrix) {
    switch (matrix) {
        case ColourMatrix::Bt709:
            return ColourCoding::Ycc709;
        case ColourMatrix::Rgb:
            return ColourCoding::Rgb;
        case ColourMatrix::Bt601:
        case ColourMatrix::Jpeg:
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
    tags.primaries = PrimariesOf(encoding.colour, height);
    tags.transfer = TransferOf(encoding.colour);
    tags.matrix = SpaceOf(MatrixFor(encoding.colour, height));
    tags.range = encoding.colour == ColourKind::Video ? AVCOL_RANGE_MPEG : AVCOL_RANGE_JPEG;
    tags.chroma = ChromaOf(encoding.colour);
    return tags;
}

PlaneFormat PlanesFor(const VideoEncoding& encoding, int height, Scan scan) {
    const AVPixFmtDescriptor* const pixels = av_pix_fmt_desc_get(PixelFormat(encoding));
    PlaneFormat format;
    format.bits = pixels->comp[0].depth;
    format.subsampleWidth = pixels->log2_chroma_w;
    format.subsampleHeight = pixels->log2_chroma_h;
    format.fullRange = encoding.colour != ColourKind::Video;
    format.chromaCentred = encoding.colour == ColourKind::Jpeg;
    format.interlaced = scan != Scan::Progressive;
    format.coding = CodingOf(MatrixFor(encoding.colour, height));
    return format;
}

AVPixelFormat PixelFormat(const VideoEncoding& encoding) {
    return av_get_pix_fmt(std::string(encoding.pixelFormat).c_str());
}

}  // namespace lineup
