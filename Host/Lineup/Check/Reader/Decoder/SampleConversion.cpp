#include "Host/Lineup/Check/Reader/Decoder/SampleConversion.h"

#include "Host/Lineup/Check/Reader/Decoder/EarlyEnd.h"
#include "Host/Lineup/Check/Reader/Decoder/FfmpegOwners.h"

#include <cstdint>
#include <type_traits>

namespace lineup::decoding {

namespace {

struct Range {
    std::size_t first;
    std::size_t count;
};

// Whole numbers become fractions of their largest; of more than 24 bits the last are rounded away.
template <class Sample>
float ToFloat(Sample value) {
    if constexpr (std::is_floating_point_v<Sample>) {
        return static_cast<float>(value);
    } else if constexpr (std::is_same_v<Sample, std::uint8_t>) {
        return static_cast<float>(value - 128) / 128.0F;
    } else {
        constexpr double kFullScale = static_cast<double>(std::uint64_t{1} << (sizeof(Sample) * 8 - 1));
        constexpr auto kScale = static_cast<float>(1 / kFullScale);
        return static_cast<float>(value) * kScale;
    }
}

template <class Sample>
void Convert(const AVFrame& frame, Range range, std::span<float> to) {
    const auto channels = static_cast<std::size_t>(frame.ch_layout.nb_channels);
    const bool isPlanar = av_sample_fmt_is_planar(static_cast<AVSampleFormat>(frame.format)) != 0;
    const std::size_t step = isPlanar ? 1 : channels;
    for (std::size_t c = 0; c < channels; ++c) {
        const std::uint8_t* const plane = frame.extended_data[isPlanar ? c : 0];
        const auto* from = reinterpret_cast<const Sample*>(plane) + range.first * step + (isPlanar ? 0 : c);
        float* const channel = to.data() + c * range.count;
        for (std::size_t i = 0; i < range.count; ++i) {
            channel[i] = ToFloat(from[i * step]);
        }
    }
}

}  // namespace

void ConvertSamples(const AVFrame& frame, std::size_t first, std::size_t count, std::span<float> to) {
    const Range range{.first = first, .count = count};
    switch (av_get_packed_sample_fmt(static_cast<AVSampleFormat>(frame.format))) {
        case AV_SAMPLE_FMT_U8:
            return Convert<std::uint8_t>(frame, range, to);
        case AV_SAMPLE_FMT_S16:
            return Convert<std::int16_t>(frame, range, to);
        case AV_SAMPLE_FMT_S32:
            return Convert<std::int32_t>(frame, range, to);
        case AV_SAMPLE_FMT_S64:
            return Convert<std::int64_t>(frame, range, to);
        case AV_SAMPLE_FMT_FLT:
            return Convert<float>(frame, range, to);
        case AV_SAMPLE_FMT_DBL:
            return Convert<double>(frame, range, to);
        default:
            throw EarlyEnd(EndCause::CutShort, "its samples are of an unknown format");
    }
}

}  // namespace lineup::decoding
