#include "Host/Lineup/Export/Media/PictureEncoder.h"

#include "Host/Lineup/Export/Media/VideoFrame.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <new>

namespace lineup {

namespace {

constexpr int kBitsPerByte = 8;

bool HasConstantQuantiser(const VideoEncoding& encoding) {
    return encoding.largestQuantiser != 0;
}

/// The bytes a frame may have.
std::int64_t LargestFrame(const PicturePlan& plan) {
    return plan.encoding->constantBitsPerSecond * plan.frameRate.den / plan.frameRate.num / kBitsPerByte;
}

// The encoder takes each picture's quantiser from the picture, so one encoder tries them all; it may give a packet
// only when it has the picture after it, or its end.
EncodedPicture EncodeWithin(std::int64_t largest, AVCodecContext& encoder, AVFrame& frame, int largestQuantiser) {
    EncodedPicture picture{NewAvPacket(), 0};
    for (int sent = kFinestQuantiser; sent <= largestQuantiser + 1; ++sent) {
        frame.pts = sent;
        frame.quality = sent * FF_QP2LAMBDA;
        SendFrame(encoder, sent <= largestQuantiser ? &frame : nullptr);
        while (picture.quantiser < largestQuantiser && ReceivePacket(encoder, *picture.packet)) {
            ++picture.quantiser;
            if (picture.packet->size <= largest) {
                return picture;
            }
        }
    }
    return picture;
}

/// A picture's slices are the cells of a grid.
struct SliceGrid {
    int columns;
    int rows;
};

// Those that the encoder finds by their number, the fewest slices first: two of them for each of two processors.
constexpr std::array<SliceGrid, 7> kSliceGrids = {{{2, 2}, {3, 2}, {3, 3}, {4, 3}, {4, 4}, {5, 4}, {5, 5}}};

int SlicesOf(int width, int height, int mostPixels) {
    const auto rounded = [](int length, int parts) { return (length + parts - 1) / parts; };
    const auto* const grid = std::ranges::find_if(kSliceGrids, [&](const SliceGrid& cells) {
        return std::int64_t{rounded(width, cells.columns)} * rounded(height, cells.rows) <= mostPixels;
    });
    const SliceGrid& found = grid == kSliceGrids.end() ? kSliceGrids.back() : *grid;
    return found.columns * found.rows;
}

// The first level that allows the picture; null where that is the encoder's affair.
const CodecLevel* LevelOf(const PicturePlan& plan) {
    const std::int64_t pixels = std::int64_t{plan.width} * plan.height;
    const auto levels = plan.encoding->levels;
    const auto found = std::ranges::find_if(levels, [&](const CodecLevel& level) {
        return plan.width <= level.maxWidth && plan.height <= level.maxHeight &&
               pixels * plan.frameRate.num <= level.maxPixelsPerSecond * plan.frameRate.den;
    });
    return found == levels.end() ? nullptr : &*found;
}

// The encoder frees it.
std::uint16_t* FlatMatrix(int step) {
    constexpr std::size_t kFrequencies = 64;
    auto* const matrix = static_cast<std::uint16_t*>(av_malloc(kFrequencies * sizeof(std::uint16_t)));
    if (matrix == nullptr) {
        throw std::bad_alloc();
    }
    std::fill_n(matrix, kFrequencies, static_cast<std::uint16_t>(step));
    return matrix;
}

}  // namespace

AvCodecContext OpenPictureEncoder(const AVFrame& frame, const PicturePlan& plan, bool globalHeaders, int quantiser) {
    const VideoEncoding& encoding = *plan.encoding;
    AvCodecContext encoder = NewEncoder(encoding.encoder);
    DescribeFrame(*encoder, frame);
    encoder->framerate = {plan.frameRate.num, plan.frameRate.den};
    encoder->time_base = {plan.frameRate.den, plan.frameRate.num};
    if (globalHeaders) {
        encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    if (const CodecLevel* const level = LevelOf(plan); level != nullptr) {
        encoder->level = level->number;
        encoder->rc_buffer_size = level->bufferBits;
    }
    if (encoding.matrixStep != 0) {
        encoder->intra_matrix = FlatMatrix(encoding.matrixStep);
    }
    if (HasConstantQuantiser(encoding)) {
        encoder->flags |= AV_CODEC_FLAG_QSCALE;
        encoder->global_quality = quantiser * FF_QP2LAMBDA;
    }
    AvOptions options(encoding.options);
    if (encoding.mostPixelsOfSlice != 0) {
        options.Set("slices", fmt::format("{}", SlicesOf(frame.width, frame.height, encoding.mostPixelsOfSlice)));
    }
    if (plan.scan == Scan::BottomFieldFirst) {
        options.Set(encoding.bottomFirstOptions);
    }
    if (plan.timecode && !encoding.timecodeOption.empty()) {
        options.Set(encoding.timecodeOption, plan.timecode->Text());
    }
    OpenEncoder(*encoder, options);
    return encoder;
}

void SendPicture(AVCodecContext& encoder, AVFrame& frame, std::int64_t index) {
    frame.pts = index;
    frame.quality = encoder.global_quality;  // encoders with a constant quantiser take it from the frame
    SendFrame(encoder, &frame);
}

EncodedPicture EncodePicture(AVCodecContext& encoder, AVFrame& frame, const PicturePlan& plan) {
    EncodedPicture picture{NewAvPacket()};
    if (HasConstantQuantiser(*plan.encoding)) {
        picture = EncodeWithin(LargestFrame(plan), encoder, frame, plan.encoding->largestQuantiser);
    } else {
        SendPicture(encoder, frame, 0);
        SendFrame(encoder, nullptr);
        static_cast<void>(ReceivePacket(encoder, *picture.packet));
    }
    if (picture.packet->size == 0) {
        throw Error("cannot encode the picture: the encoder gave nothing");
    }
    return picture;
}

}  // namespace lineup
