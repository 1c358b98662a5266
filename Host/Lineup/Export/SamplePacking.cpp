#include "Host/Lineup/Export/SamplePacking.h"

#include <algorithm>
#include <cmath>

namespace lineup {

namespace {

// The float times a power of two is exact in a double, so the only rounding is to the step.
template <int kBits>
std::int32_t Quantise(float sample) {
    constexpr auto kFullScale = static_cast<double>(std::int64_t{1} << (kBits - 1));
    if (std::isnan(sample)) {
        return 0;
    }
    const double steps = std::nearbyint(static_cast<double>(sample) * kFullScale);
    return static_cast<std::int32_t>(std::clamp(steps, -kFullScale, kFullScale - 1));
}

template <typename Packed, typename Pack>
void PackEach(std::span<const float> samples, void* destination, std::size_t stride, Pack pack) {
    auto* const packed = static_cast<Packed*>(destination);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        packed[i * stride] = pack(samples[i]);
    }
}

}  // namespace

std::size_t BytesPerSample(SampleFormat format) {
    return format == SampleFormat::S16 ? 2 : 4;
}

void PackSamples(std::span<const float> samples, SampleFormat format, void* destination, std::size_t stride) {
    switch (format) {
        case SampleFormat::S16:
            return PackEach<std::int16_t>(samples, destination, stride,
                                          [](float sample) { return static_cast<std::int16_t>(Quantise<16>(sample)); });
        case SampleFormat::S24:
            return PackEach<std::int32_t>(samples, destination, stride,
                                          [](float sample) { return Quantise<24>(sample) * 256; });
        case SampleFormat::S32:
            return PackEach<std::int32_t>(samples, destination, stride, Quantise<32>);
        case SampleFormat::F32:
            return PackEach<float>(samples, destination, stride, [](float sample) { return sample; });
    }
}

}  // namespace lineup
