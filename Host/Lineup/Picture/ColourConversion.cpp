#include "Host/Lineup/Picture/ColourConversion.h"

#include <lineup/Error.h>

#include <zimg.h>

#include <memory>
#include <new>
#include <string>

namespace lineup {
inline namespace parts {

namespace {

constexpr std::size_t kAlignmentBytes = 64;

struct FreeGraph {
    void operator()(zimg_filter_graph* graph) const noexcept { zimg_filter_graph_free(graph); }
};

struct FreeAligned {
    void operator()(std::byte* memory) const noexcept {
        ::operator delete[](memory, std::align_val_t{kAlignmentBytes});
    }
};

void Require(bool worked) {
    if (!worked) {
        std::array<char, 256> cause{};
        zimg_get_last_error(cause.data(), cause.size());
        throw Error(std::string("cannot convert the picture's colours: ") + cause.data());
    }
}

zimg_image_format SourceFormat(const FloatPicture& picture) {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(picture.Width());
    format.height = static_cast<unsigned>(picture.Height());
    format.pixel_type = ZIMG_PIXEL_FLOAT;
    format.color_family = ZIMG_COLOR_YUV;
    format.matrix_coefficients = ZIMG_MATRIX_ST170_M;
    // The same curve and primaries on both sides: nothing is linearised, only the matrix changes.
    format.transfer_characteristics = ZIMG_TRANSFER_BT709;
    format.color_primaries = ZIMG_PRIMARIES_BT709;
    return format;
}

zimg_matrix_coefficients_e Matrix(ColourCoding coding) {
    switch (coding) {
        case ColourCoding::Ycc601:
            return ZIMG_MATRIX_ST170_M;
        case ColourCoding::Ycc709:
            return ZIMG_MATRIX_BT709;
        case ColourCoding::Rgb:
            break;
    }
    return ZIMG_MATRIX_RGB;
}

zimg_image_format DestinationFormat(const zimg_image_format& source, const PlaneFormat& planes) {
    zimg_image_format format = source;
    format.pixel_type = planes.bits > 8 ? ZIMG_PIXEL_WORD : ZIMG_PIXEL_BYTE;
    format.depth = static_cast<unsigned>(planes.bits);
    format.pixel_range = planes.fullRange ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
    format.color_family = planes.coding == ColourCoding::Rgb ? ZIMG_COLOR_RGB : ZIMG_COLOR_YUV;
    format.matrix_coefficients = Matrix(planes.coding);
    format.subsample_w = static_cast<unsigned>(planes.subsampleWidth);
    format.subsample_h = static_cast<unsigned>(planes.subsampleHeight);
    format.chroma_location = planes.chromaCentred ? ZIMG_CHROMA_CENTER : ZIMG_CHROMA_LEFT;
    return format;
}

/// Which lines of a picture are converted: all of them, or every other one.
enum class Lines { All, Top, Bottom };

zimg_field_parity_e Parity(Lines lines) {
    switch (lines) {
        case Lines::Top:
            return ZIMG_FIELD_TOP;
        case Lines::Bottom:
            return ZIMG_FIELD_BOTTOM;
        case Lines::All:
            break;
    }
    return ZIMG_FIELD_PROGRESSIVE;
}

void Convert(const FloatPicture& picture, const PlaneFormat& format, const std::array<PlaneMemory, 3>& planes,
             Lines lines) {
    const unsigned step = lines == Lines::All ? 1 : 2;
    zimg_image_format from = SourceFormat(picture);
    from.height /= step;
    from.field_parity = Parity(lines);
    const zimg_image_format to = DestinationFormat(from, format);
    zimg_graph_builder_params parameters;
    zimg_graph_builder_params_default(&parameters, ZIMG_API_VERSION);
    parameters.resample_filter_uv = ZIMG_RESIZE_BILINEAR;
    parameters.dither_type = ZIMG_DITHER_NONE;
    const std::unique_ptr<zimg_filter_graph, FreeGraph> graph(zimg_filter_graph_build(&from, &to, &parameters));
    Require(graph != nullptr);

    std::size_t scratchBytes = 0;
    Require(zimg_filter_graph_get_tmp_size(graph.get(), &scratchBytes) == ZIMG_ERROR_SUCCESS);
    const std::unique_ptr<std::byte[], FreeAligned> scratch(new (std::align_val_t{kAlignmentBytes})
                                                                std::byte[scratchBytes]);

    zimg_image_buffer_const source{};
    zimg_image_buffer destination{};
    source.version = ZIMG_API_VERSION;
    destination.version = ZIMG_API_VERSION;
    const int first = lines == Lines::Bottom ? 1 : 0;
    for (std::size_t plane = 0; plane < planes.size(); ++plane) {
        const PlaneMemory& memory = planes[plane];
        source.plane[plane] = {picture.Line(static_cast<int>(plane), first).data(), picture.StrideBytes() * step,
                               ZIMG_BUFFER_MAX};
        destination.plane[plane] = {static_cast<std::byte*>(memory.data) + memory.strideBytes * first,
                                    memory.strideBytes * step, ZIMG_BUFFER_MAX};
    }
    Require(zimg_filter_graph_process(graph.get(), &source, &destination, scratch.get(), nullptr, nullptr, nullptr,
                                      nullptr) == ZIMG_ERROR_SUCCESS);
}

}  // namespace

void ConvertColour(const FloatPicture& picture, const PlaneFormat& format, const std::array<PlaneMemory, 3>& planes) {
    if (format.interlaced && format.subsampleHeight > 0) {
        Convert(picture, format, planes, Lines::Top);
        Convert(picture, format, planes, Lines::Bottom);
    } else {
        Convert(picture, format, planes, Lines::All);
    }
}

}  // namespace parts
}  // namespace lineup
