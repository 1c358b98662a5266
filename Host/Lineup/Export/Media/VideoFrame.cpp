#include "Host/Lineup/Export/Media/VideoFrame.h"

#include "Host/Lineup/Export/Media/ColourTags.h"
#include "Host/Lineup/Export/Media/FfmpegVersions.h"
#include "Host/Lineup/Picture/ColourConversion.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>

extern "C" {
#include <libavutil/imgutils.h>
}

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

/// A format whose bytes lie in one plane, made of three planes. `order`: the planes whose next bytes follow each other,
/// over and over.
struct PackedFormat {
    AVPixelFormat packed;
    AVPixelFormat planar;
    std::span<const std::uint8_t> order;
    int orderPixels;  ///< that one turn of the order makes
};

constexpr std::array<std::uint8_t, 3> kRgbOrder = {0, 1, 2};
constexpr std::array<std::uint8_t, 4> kUyvyOrder = {1, 0, 2, 0};
constexpr std::array<PackedFormat, 2> kPackedFormats = {{
    {AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV444P, kRgbOrder, 1},    // R', G', B'
    {AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV422P, kUyvyOrder, 2}  // Cb, Y', Cr, Y' of the pixel beside it
}};

const PackedFormat* FindPackedFormat(AVPixelFormat format) {
    const auto* const found = std::ranges::find(kPackedFormats, format, &PackedFormat::packed);
    return found == kPackedFormats.end() ? nullptr : found;
}

void Pack(const std::array<PlaneMemory, kPlanes>& planes, const PackedFormat& format, AVFrame& packed) {
    for (std::ptrdiff_t line = 0; line < packed.height; ++line) {
        std::array<const std::uint8_t*, kPlanes> next{};
        for (std::size_t i = 0; i < kPlanes; ++i) {
            next.at(i) = static_cast<const std::uint8_t*>(planes.at(i).data) + line * planes.at(i).strideBytes;
        }
        std::uint8_t* out = packed.data[0] + line * packed.linesize[0];
        for (int x = 0; x < packed.width; x += format.orderPixels) {
            for (const std::uint8_t plane : format.order) {
                *out++ = *next[plane]++;
            }
        }
    }
}

// MPEG-2 says of the clean part which shape it has.
void TagCleanPart(AVFrame& frame, const PictureShape& shape) {
    if (shape.cleanWidth == frame.width && shape.cleanHeight == frame.height) {
        return;
    }
    AVFrameSideData* const side = av_frame_new_side_data(&frame, AV_FRAME_DATA_PANSCAN, sizeof(AVPanScan));
    if (side == nullptr) {
        throw std::bad_alloc();
    }
    constexpr int kUnitsAPixel = 16;
    AVPanScan pan{};
    pan.width = shape.cleanWidth * kUnitsAPixel;
    pan.height = shape.cleanHeight * kUnitsAPixel;
    std::memcpy(side->data, &pan, sizeof(pan));
}

void Tag(AVFrame& frame, const PicturePlan& plan) {
    const ColourTags tags = TagsFor(*plan.encoding, frame.height);
    frame.color_primaries = tags.primaries;
    frame.color_trc = tags.transfer;
    frame.colorspace = tags.matrix;
    frame.color_range = tags.range;
    frame.chroma_location = tags.chroma;
    frame.sample_aspect_ratio = {plan.shape.sampleAspect.num, plan.shape.sampleAspect.den};
    SetFields(frame, {.isInterlaced = plan.scan != Scan::Progressive, .isTopFirst = plan.scan == Scan::TopFieldFirst});
    TagCleanPart(frame, plan.shape);
}

}  // namespace

AvFrame MakeVideoFrame(const Clip& clip, const PicturePlan& plan) {
    const VideoEncoding& encoding = *plan.encoding;
    const FloatPicture picture = ReadPicture(clip, plan.width, plan.height, plan.card);
    const PlaneFormat planes = PlanesFor(encoding, plan.height, plan.scan);
    AvFrame frame = AllocateFrame(PixelFormat(encoding), plan.width, plan.height);
    if (const PackedFormat* const packed = FindPackedFormat(PixelFormat(encoding)); packed != nullptr) {
        const AvFrame separate = AllocateFrame(packed->planar, plan.width, plan.height);
        ConvertColour(picture, planes, PlanesOf(*separate));
        Pack(PlanesOf(*separate), *packed, *frame);
    } else {
        ConvertColour(picture, planes, PlanesOf(*frame));
    }
    Tag(*frame, plan);
    return frame;
}

AvFrame MakeBlackFrame(const AVFrame& like) {
    AvFrame frame(av_frame_clone(&like));
    if (frame == nullptr) {
        throw std::bad_alloc();
    }
    RequireAv(av_frame_make_writable(frame.get()), "cannot make room for a frame");
    std::array<std::ptrdiff_t, AV_NUM_DATA_POINTERS> strides{};
    std::copy_n(frame->linesize, strides.size(), strides.begin());
    RequireAv(av_image_fill_black(frame->data, strides.data(), static_cast<AVPixelFormat>(frame->format),
                                  frame->color_range, frame->width, frame->height),
              "cannot draw black");
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
    const FrameFields fields = FieldsOf(frame);
    if (!fields.isInterlaced) {
        encoder.field_order = AV_FIELD_PROGRESSIVE;
    } else {
        // Lines of both fields lie in a frame by turns. The names say which field is coded first and which is on top.
        encoder.field_order = fields.isTopFirst ? AV_FIELD_TB : AV_FIELD_BT;
        encoder.flags |= AV_CODEC_FLAG_INTERLACED_DCT | AV_CODEC_FLAG_INTERLACED_ME;
    }
}

}  // namespace lineup
