#include <lineup/services/FrameBuffer.h>
#include "Benchmarks/Race.h"
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>

// The frame fill against memset of the same bytes and against a loop over the pixels.

namespace {

constexpr int kTurns = 200;
constexpr std::array<std::uint8_t, 4> kYellow = {142, 44, 161, 255};

struct Target {
    Target(int width, int height, std::uint32_t pixelFormat)
        : buffer(width, height, pixelFormat),
          pixels(buffer.Handle()->pixels),
          rowBytes(buffer.RowBytes()),
          bytes(static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(height)) {
        std::memset(pixels, 0, bytes);  // a page touched for the first time costs more than filling it
    }

    zelcore::FrameBuffer buffer;
    std::uint8_t* pixels;
    int rowBytes;
    std::size_t bytes;
};

template <class Component>
[[gnu::noinline]] void FillLoop(std::uint8_t* pixels, int rowBytes, int width, int height,
                                const std::array<Component, 4>& pixel) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::memcpy(pixels + std::ptrdiff_t{y} * rowBytes + std::ptrdiff_t{x} * std::ptrdiff_t{sizeof pixel},
                        pixel.data(), sizeof pixel);
        }
    }
}

void WholeFrame(benchmark::State& state, std::uint32_t pixelFormat, std::uint32_t fillFormat, int width, int height) {
    Target target(width, height, pixelFormat);
    const auto loop = [&] {
        if (fillFormat == kFillFormat_VUYA_32f) {
            FillLoop<float>(target.pixels, target.rowBytes, width, height, {0.0625F, -0.375F, 0.66F, 1.0F});
        } else {
            FillLoop<std::uint8_t>(target.pixels, target.rowBytes, width, height, kYellow);
        }
    };
    bench::Race(state, 1,
                [&] {
                    IR_FillWithColor(target.pixels, target.rowBytes, width, height, fillFormat, kYellow.data(),
                                     kFillFormat_VUYA_8u);
                },
                {{"loop", loop}, {"memset", [&] { std::memset(target.pixels, 0x55, target.bytes); }}});
}

// The luma ramp: one call a column, each a different colour.
void Ramp(benchmark::State& state) {
    constexpr int kWidth = 1440;
    constexpr int kHeight = 90;
    Target target(kWidth, kHeight, kPixelFormat_VUYA_32f);
    const auto eachColumn = [&](auto fill) {
        for (int x = 0; x < kWidth; ++x) {
            const std::array<float, 4> colour = {0.0F, 0.0F, static_cast<float>(x) / kWidth, 1.0F};
            fill(target.pixels + std::ptrdiff_t{x} * kBytesPerPixel_VUYA_32f, colour);
        }
    };
    bench::Race(state, 1,
                [&] {
                    eachColumn([&](std::uint8_t* at, const std::array<float, 4>& colour) {
                        IR_FillWithColor(at, target.rowBytes, 1, kHeight, kFillFormat_VUYA_32f, colour.data(),
                                         kFillFormat_VUYA_32f);
                    });
                },
                {{"loop", [&] {
                      eachColumn([&](std::uint8_t* at, const std::array<float, 4>& colour) {
                          FillLoop<float>(at, target.rowBytes, 1, kHeight, colour);
                      });
                  }}});
}

}  // namespace

BENCHMARK_CAPTURE(WholeFrame, hd_float, kPixelFormat_VUYA_32f, kFillFormat_VUYA_32f, 1920, 1080)
    ->UseManualTime()
    ->Iterations(kTurns);
BENCHMARK_CAPTURE(WholeFrame, hd_8bit, kPixelFormat_VUYA_8u, kFillFormat_VUYA_8u, 1920, 1080)
    ->UseManualTime()
    ->Iterations(kTurns);
BENCHMARK_CAPTURE(WholeFrame, sd_8bit, kPixelFormat_VUYA_8u, kFillFormat_VUYA_8u, 720, 576)
    ->UseManualTime()
    ->Iterations(kTurns);
BENCHMARK(Ramp)->UseManualTime()->Iterations(kTurns);
BENCHMARK_MAIN();
