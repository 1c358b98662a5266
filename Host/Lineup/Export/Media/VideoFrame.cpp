#include "Host/Lineup/Export/Media/VideoFrame.h"

#include "Host/Lineup/Export/FloatPicture.h"
#include "Host/Lineup/Export/Media/ColourConversion.h"
#include "Host/Lineup/Export/Media/ColourTags.h"
#include "Host/Lineup/Export/SampleAspect.h"

#include <cstdint>

namespace lineup {

namespace {

constexpr int kAlignmentBytes = 64;
constexpr std::size_t kPlanes = 3;

AvFrame AllocateFrame(AVPixelFormat format, int width, int height) {
    AvFrame frame = NewAvFrame();
    frame->format = format;
    frame->width = width;
    frame->height = height;
    RequireAv(av_frame_get_buffer(frame.get(), kAlignmentBytes), "cannot make room for a frame");
    return frame;
}

std::array<PlaneMemory, kPlanes> PlanesOf(const AVFrame& frame) {
    std::array<PlaneMemory, kPlanes> planes;
    for (std::size_t i = 0; i < kPlanes; ++i) {
        planes.at(i) = {frame.data[i], frame.linesize[i]};
    }
    return planes;
}

/// Three planes R, G, B of bytes, made one plane of triples.
void Interleave(const std::array<PlaneMemory, kPlanes>& planes, AVFrame& triples) {
    for (std::ptrdiff_t line = 0; line < triples.height; ++line) {
        std::uint8_t* triple = triples.data[0] + line * triples.linesize[0];
        for (std::ptrdiff_t x = 0; x < triples.width; ++x) {
            for (const PlaneMemory& plane : planes) {
                *triple++ = static_cast<const std::uint8_t*>(plane.data)[line * plane.strideBytes + x];
            }
        }
    }
}

void Tag(AVFrame& frame, const VideoCodec& codec) {
    const ColourTags tags = TagsFor(codec, frame.height);
    frame.color_primaries = tags.primaries;
    frame.color_trc = tags.transfer;
    frame.colorspace = tags.matrix;
    frame.color_range = tags.range;
    frame.chroma_location = tags.chroma;
    const Rational aspect = SampleAspect(frame.width, frame.height);
    frame.sample_aspect_ratio = {aspect.num, aspect.den};
}

}  // namespace

AvFrame MakeVideoFrame(const Clip& clip, const VideoCodec& codec, int width, int height, Card card) {
    const FloatPicture picture = ReadPicture(clip, width, height, card);
    const PlaneFormat planes = PlanesFor(codec, height);
    AvFrame frame = AllocateFrame(PixelFormat(codec), width, height);
    if (planes.coding == ColourCoding::Rgb) {
        const AvFrame separate = AllocateFrame(AV_PIX_FMT_YUV444P, width, height);
        ConvertColour(picture, planes, PlanesOf(*separate));
        Interleave(PlanesOf(*separate), *frame);
    } else {
        ConvertColour(picture, planes, PlanesOf(*frame));
    }
    Tag(*frame, codec);
    return frame;
}

void DescribeFrame(AVCodecContext& encoder, const AVFrame& frame) {
    encoder.width = frame.width;
    encoder.height = frame.height;
    encoder.pix_fmt = static_cast<AVPixelFormat>(frame.format);
    encoder.color_primaries = frame.color_primaries;
    encoder.color_trc = frame.color_trc;
    encoder.colorspace = frame.colorspace;
    encoder.color_range = frame.color_range;
    encoder.chroma_sample_location = frame.chroma_location;
    encoder.sample_aspect_ratio = frame.sample_aspect_ratio;
    encoder.field_order = AV_FIELD_PROGRESSIVE;
}

}  // namespace lineup
