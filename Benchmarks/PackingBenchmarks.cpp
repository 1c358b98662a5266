#include "Benchmarks/Race.h"
#include "Host/Interface/Core/VectorRuntime.h"
#include "Host/Lineup/Export/Samples/SamplePacking.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

// Floats into a file's samples, form by form, against the loop that says what comes out and against a copy of
// as many bytes as are written.

namespace {

using lineup::PackFrames;
using lineup::SampleFormat;

constexpr int kTurns = 200;
constexpr std::size_t kSamples = 4800;  // a tenth of a second at 48 kHz, as hosts ask for sound

template <int kBits>
std::int32_t Rounded(float sample) {
    constexpr auto kFullScale = static_cast<double>(std::int64_t{1} << (kBits - 1));
    if (std::isnan(sample)) {
        return 0;
    }
    const double steps = std::nearbyint(static_cast<double>(sample) * kFullScale);
    return static_cast<std::int32_t>(std::fmin(std::fmax(steps, -kFullScale), kFullScale - 1));
}

[[gnu::noinline]] void Loop24(const std::vector<const float*>& channels, std::size_t count, std::uint8_t* packed) {
    for (std::size_t i = 0; i < count; ++i) {
        for (const float* const channel : channels) {
            const std::int32_t value = Rounded<24>(channel[i]);
            std::memcpy(packed, &value, 3);
            packed += 3;
        }
    }
}

[[gnu::noinline]] void Loop16(const std::vector<const float*>& channels, std::size_t count, std::uint8_t* packed) {
    for (std::size_t i = 0; i < count; ++i) {
        for (const float* const channel : channels) {
            const std::int32_t value = Rounded<16>(channel[i]);
            std::memcpy(packed, &value, 2);
            packed += 2;
        }
    }
}

void Pack(benchmark::State& state, std::int32_t variant, SampleFormat format, std::size_t numChannels) {
    ippJumpIndexForMergedLibs = variant;
    const std::vector<std::vector<float>> samples(numChannels, std::vector<float>(kSamples, 0.123F));
    std::vector<const float*> channels;
    for (const auto& channel : samples) {
        channels.push_back(channel.data());
    }
    const std::size_t bytes = kSamples * numChannels * lineup::PackedBytes(format);
    const std::vector<std::uint8_t> source(bytes, 1);
    std::vector<std::uint8_t> subject(bytes);
    std::vector<std::uint8_t> loop(bytes);
    std::vector<std::uint8_t> copied(bytes);
    const auto plain = format == SampleFormat::S24 ? Loop24 : Loop16;
    bench::Race(state, 20, [&] { PackFrames(channels, kSamples, format, subject.data()); },
                {{"loop", [&] { plain(channels, kSamples, loop.data()); }},
                 {"memcpy", [&] { std::memcpy(copied.data(), source.data(), bytes); }}});
}

void RegisterAll() {
    ippSafeInit();
    const std::int32_t best = ippJumpIndexForMergedLibs;
#if defined(__x86_64__)
    constexpr std::array kForms = {std::pair(kVectorN8, "sse2"), std::pair(kVectorL9, "avx2")};
#else
    constexpr std::array kForms = {std::pair(kVectorLowest, "plain")};
#endif
    for (const auto& [variant, form] : kForms) {
        if (variant > best) {
            continue;
        }
        for (const std::size_t channels : {1U, 2U, 6U}) {
            for (const auto& [format, name] : {std::pair(SampleFormat::S24, "s24"), {SampleFormat::S16, "s16"}}) {
                const std::string title =
                    std::string("pack/") + name + "/" + std::to_string(channels) + "_channels/" + form;
                benchmark::RegisterBenchmark(title.c_str(), Pack, variant, format, channels)
                    ->UseManualTime()
                    ->Iterations(kTurns);
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunAll(argc, argv, RegisterAll);
}
