#include "Host/Lineup/Export/Samples/SamplePacking.h"

#include "Host/Interface/Core/VectorRuntime.h"
#include "Host/Lineup/Export/Samples/PackingKernels.h"
#include "Host/Lineup/Export/Samples/Quantise.h"

namespace lineup {
inline namespace parts {

namespace {

template <typename Packed, typename Pack>
void PackEach(std::span<const float> samples, void* destination, std::size_t stride, Pack pack) {
    auto* const packed = static_cast<Packed*>(destination);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        packed[i * stride] = pack(samples[i]);
    }
}

/// The form that the process's dispatch index names.
const PackingKernels& Kernels() {
#if defined(__x86_64__)
    if (ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) == kVectorNotInitialised) {
        ippSafeInit();
    }
    return ippJumpIndexForMergedLibs.load(std::memory_order_relaxed) >= kVectorL9 ? kPackingAvx2 : kPackingSse2;
#else
    return kPackingPlain;
#endif
}

PackFunction& FunctionFor(SampleFormat format) {
    const PackingKernels& kernels = Kernels();
    switch (format) {
        case SampleFormat::S16:
            return *kernels.s16;
        case SampleFormat::S24:
            return *kernels.s24;
        case SampleFormat::S32:
            return *kernels.s32;
        case SampleFormat::F32:
            break;
    }
    return *kernels.f32;
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

std::size_t PackedBytes(SampleFormat format) {
    return format == SampleFormat::S24 ? 3 : BytesPerSample(format);
}

void PackFrames(std::span<const float* const> channels, std::size_t count, SampleFormat format, std::uint8_t* packed) {
    FunctionFor(format)(channels.data(), channels.size(), count, packed);
}

}  // namespace parts
}  // namespace lineup
