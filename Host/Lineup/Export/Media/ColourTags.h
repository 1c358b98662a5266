#pragma once

#include <lineup/Scan.h>
#include "Host/Lineup/Export/Formats/EncoderTable.h"
#include "Host/Lineup/Picture/ColourConversion.h"

extern "C" {
#include <libavutil/pixdesc.h>
#include <libavutil/pixfmt.h>
}

namespace lineup {

/// How a file says what its picture's values mean.
struct ColourTags {
    AVColorPrimaries primaries;
    AVColorTransferCharacteristic transfer;
    AVColorSpace matrix;
    AVColorRange range;
    AVChromaLocation chroma;
};

/// What a picture of `height` lines is converted to and tagged as in this codec.
ColourTags TagsFor(const VideoEncoding& encoding, int height);

/// The planes the codec's pixel format is made of, filled as TagsFor says.
PlaneFormat PlanesFor(const VideoEncoding& encoding, int height, Scan scan);

/// The codec's pixel format.
AVPixelFormat PixelFormat(const VideoEncoding& encoding);

}  // namespace lineup
