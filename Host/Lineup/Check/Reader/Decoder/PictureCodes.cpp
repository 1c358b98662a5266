#include "Host/Lineup/Check/Reader/Decoder/PictureCodes.h"

#include "Host/Lineup/Check/Reader/Protocol/MessageWriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace lineup::decoding {

namespace {

constexpr int kMostBits = 16;
constexpr std::uint64_t kUnreadable = AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_FLOAT | AV_PIX_FMT_FLAG_BAYER;

const AVPixFmtDescriptor* Descriptor(const AVFrame& frame) {
    return av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
}

bool IsPalette(const AVPixFmtDescriptor& format) {
    return (format.flags & AV_PIX_FMT_FLAG_PAL) != 0;
}

bool IsReadable(const AVPixFmtDescriptor* format) {
    return format != nullptr && (format->flags & kUnreadable) == 0 && format->nb_components >= 1 &&
           format->log2_chroma_w <= 2 && format->log2_chroma_h <= 2 && format->comp[0].depth <= kMostBits;
}

TextField<16> NameField(const char* name, bool isSaid) {
    return ToField<16>(isSaid && name != nullptr ? name : "");
}

// The frame's word goes before the container's.
template <class Tag>
Tag Said(Tag frame, Tag decoder, Tag unspecified) {
    return frame != unspecified ? frame : decoder;
}

void DescribeTags(const AVFrame& frame, const AVCodecContext& decoder, Frame& head) {
    const auto matrix = Said(frame.colorspace, decoder.colorspace, AVCOL_SPC_UNSPECIFIED);
    const auto primaries = Said(frame.color_primaries, decoder.color_primaries, AVCOL_PRI_UNSPECIFIED);
    const auto transfer = Said(frame.color_trc, decoder.color_trc, AVCOL_TRC_UNSPECIFIED);
    const auto range = Said(frame.color_range, decoder.color_range, AVCOL_RANGE_UNSPECIFIED);
    const auto place = Said(frame.chroma_location, decoder.chroma_sample_location, AVCHROMA_LOC_UNSPECIFIED);
    head.matrix = NameField(av_color_space_name(matrix), matrix != AVCOL_SPC_UNSPECIFIED);
    head.primaries = NameField(av_color_primaries_name(primaries), primaries != AVCOL_PRI_UNSPECIFIED);
    head.transfer = NameField(av_color_transfer_name(transfer), transfer != AVCOL_TRC_UNSPECIFIED);
    head.range = NameField(range == AVCOL_RANGE_JPEG ? "full" : "limited", range != AVCOL_RANGE_UNSPECIFIED);
    head.chromaPlace = NameField(av_chroma_location_name(place), place != AVCHROMA_LOC_UNSPECIFIED);
}

// Codes that lie one behind the other, as they are to be.
bool IsPlain(const AVPixFmtDescriptor& format, const AVComponentDescriptor& component) {
    const bool isNative = component.depth <= 8 ||
                          ((format.flags & AV_PIX_FMT_FLAG_BE) == 0) == (std::endian::native == std::endian::little);
    return isNative && component.shift == 0 && component.offset == 0 &&
           component.step == (component.depth > 8 ? 2 : 1) && (format.flags & AV_PIX_FMT_FLAG_BITSTREAM) == 0;
}

// A palette holds words of A, R, G and B, the highest byte first.
std::size_t PaletteByte(std::uint32_t plane) {
    return std::endian::native == std::endian::little ? 2 - plane : 1 + plane;
}

// From the top down, whichever way the frame lies in memory.
const std::uint8_t* LineOf(const AVFrame& frame, int memoryPlane, std::uint32_t line) {
    return frame.data[memoryPlane] + static_cast<std::ptrdiff_t>(line) * frame.linesize[memoryPlane];
}

void ReadPalette(const AVFrame& frame, std::uint32_t plane, std::uint32_t line, std::span<std::uint16_t> codes) {
    constexpr std::size_t kWord = 4;
    const std::span entries(LineOf(frame, 0, line), codes.size());
    const std::uint8_t* const palette = frame.data[1] + PaletteByte(plane);
    std::ranges::transform(entries, codes.begin(), [palette](std::uint8_t entry) { return palette[kWord * entry]; });
}

}  // namespace

Frame DescribePicture(const AVFrame& frame, const AVCodecContext& decoder) {
    const AVPixFmtDescriptor* const format = Descriptor(frame);
    Frame head{};
    head.width = static_cast<std::uint32_t>(frame.width);
    head.height = static_cast<std::uint32_t>(frame.height);
    head.bits = 8;
    head.format = ToField<16>(format != nullptr ? format->name : "unknown");
    if ((frame.flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame.decode_error_flags != 0) {
        head.flags |= kDamagedFrame;
    }
    DescribeTags(frame, decoder, head);
    if (!IsReadable(format)) {
        head.flags |= kCannotRead;
        return head;
    }
    const bool isRgb = IsPalette(*format) || (format->flags & AV_PIX_FMT_FLAG_RGB) != 0;
    head.bits = IsPalette(*format) ? 8U : static_cast<std::uint32_t>(format->comp[0].depth);
    head.planes = IsPalette(*format) || format->nb_components >= 3 ? 3 : 1;
    head.flags |= isRgb ? kRgbFrame : 0U;
    if (!isRgb && head.planes == 3) {
        head.subsampleWidth = format->log2_chroma_w;
        head.subsampleHeight = format->log2_chroma_h;
    }
    return head;
}

void ReadCodes(const AVFrame& frame, std::uint32_t plane, std::uint32_t line, std::span<std::uint16_t> codes) {
    const AVPixFmtDescriptor& format = *Descriptor(frame);
    if (IsPalette(format)) {
        ReadPalette(frame, plane, line, codes);
        return;
    }
    const AVComponentDescriptor& codesOf = format.comp[plane];
    if (IsPlain(format, codesOf)) {
        const std::uint8_t* const from = LineOf(frame, codesOf.plane, line);
        if (codesOf.depth > 8) {
            std::memcpy(codes.data(), from, codes.size_bytes());
        } else {
            std::copy_n(from, codes.size(), codes.begin());
        }
    } else {
        std::array<const std::uint8_t*, 4> data{frame.data[0], frame.data[1], frame.data[2], frame.data[3]};
        av_read_image_line2(codes.data(), data.data(), frame.linesize, &format, 0, static_cast<int>(line),
                            static_cast<int>(plane), static_cast<int>(codes.size()), 0, sizeof(std::uint16_t));
    }
    const auto mask = static_cast<std::uint16_t>((1U << static_cast<unsigned>(codesOf.depth)) - 1U);
    for (std::uint16_t& code : codes) {
        code &= mask;
    }
}

}  // namespace lineup::decoding
