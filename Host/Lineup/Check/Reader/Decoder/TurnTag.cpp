#include "Host/Lineup/Check/Reader/Decoder/TurnTag.h"

#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <span>

extern "C" {
#include <libavutil/display.h>
}

namespace lineup::decoding {

namespace {

using DisplayMatrix = std::array<std::int32_t, 9>;

std::span<const std::uint8_t> OfFrame(const AVFrame& frame) {
    const AVFrameSideData* const side = av_frame_get_side_data(&frame, AV_FRAME_DATA_DISPLAYMATRIX);
    return side != nullptr ? std::span<const std::uint8_t>(side->data, side->size) : std::span<const std::uint8_t>();
}

std::span<const std::uint8_t> OfStream(const AVStream& stream) {
#if LIBAVCODEC_VERSION_MAJOR >= 61
    const AVPacketSideData* const side = av_packet_side_data_get(
        stream.codecpar->coded_side_data, stream.codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    return side != nullptr ? std::span<const std::uint8_t>(side->data, side->size) : std::span<const std::uint8_t>();
#else
    std::size_t size = 0;
    const std::uint8_t* const data = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, &size);
    return {data, data != nullptr ? size : 0};
#endif
}

std::optional<DisplayMatrix> MatrixOf(const AVFrame& frame, const AVStream& stream) {
    DisplayMatrix matrix{};
    for (const auto said : {OfFrame(frame), OfStream(stream)}) {
        if (said.size() >= sizeof matrix) {
            std::memcpy(matrix.data(), said.data(), sizeof matrix);
            return matrix;
        }
    }
    return std::nullopt;
}

bool TurnsOver(const DisplayMatrix& matrix) {
    return static_cast<double>(matrix[0]) * matrix[4] < static_cast<double>(matrix[1]) * matrix[3];
}

}  // namespace

void DescribeTurn(const AVFrame& frame, const AVStream& stream, Frame& head) {
    auto matrix = MatrixOf(frame, stream);
    if (!matrix) {
        return;
    }
    const bool isMirrored = TurnsOver(*matrix);
    if (isMirrored) {
        av_display_matrix_flip(matrix->data(), 1, 0);
    }
    const double anticlockwise = av_display_rotation_get(matrix->data());
    if (std::isfinite(anticlockwise)) {
        head.flags |= isMirrored ? kMirrorTag : 0U;
        head.turnTag = static_cast<float>(anticlockwise > 0 ? 360 - anticlockwise : -anticlockwise);
    }
}

}  // namespace lineup::decoding
