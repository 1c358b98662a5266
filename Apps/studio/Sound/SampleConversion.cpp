#include "Apps/studio/Sound/SampleConversion.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace studio {

namespace {

template <class Whole>
void Round(std::span<const float> samples, char* target) noexcept {
    constexpr double kFullScale = -static_cast<double>(std::numeric_limits<Whole>::min());
    for (const float sample : samples) {
        const double scaled = std::isnan(sample) ? 0 : std::nearbyint(static_cast<double>(sample) * kFullScale);
        const auto whole = static_cast<Whole>(std::clamp(scaled, -kFullScale, kFullScale - 1));
        std::memcpy(target, &whole, sizeof whole);
        target += sizeof whole;
    }
}

}  // namespace

std::size_t BytesOf(QAudioFormat::SampleFormat format) noexcept {
    switch (format) {
        case QAudioFormat::Float:
            return sizeof(float);
        case QAudioFormat::Int32:
            return sizeof(std::int32_t);
        case QAudioFormat::Int16:
            return sizeof(std::int16_t);
        default:
            return 0;
    }
}

void ConvertSamples(std::span<const float> samples, QAudioFormat::SampleFormat format, char* target) noexcept {
    if (format == QAudioFormat::Int16) {
        Round<std::int16_t>(samples, target);
    } else if (format == QAudioFormat::Int32) {
        Round<std::int32_t>(samples, target);
    } else {
        std::memcpy(target, samples.data(), samples.size_bytes());
    }
}

}  // namespace studio
