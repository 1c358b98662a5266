#include <lineup/Clip.h>
#include <lineup/Importer.h>
#include "Benchmarks/Race.h"
#include "Host/Lineup/Check/Picture/CheckPicture.h"
#include "Host/Lineup/Check/Picture/Measure/PlaneSums.h"
#include "Host/Lineup/Picture/FloatPicture.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <memory>

// What a check does with a still picture behind its decoding, from the codes to the faults, against the 100 ms that a
// person takes for at once.

namespace {

constexpr double kAtOnceMs = 100;
constexpr unsigned kBits = 10;

const lineup::Clip& TheClip() {
    static const lineup::Clip clip(std::make_shared<lineup::Importer>(BENCHMARK_BUNDLE));
    return clip;
}

// The card as v210 has it, in BT.601 and said to be; where that is not said, the matrix is wrong for an HD size.
lineup::DecodedPicture Still(int width, int height) {
    const lineup::FloatPicture card = lineup::ReadPicture(TheClip(), width, height, lineup::Card::HD);
    lineup::DecodedPicture picture;
    picture.head.width = static_cast<std::uint32_t>(width);
    picture.head.height = static_cast<std::uint32_t>(height);
    picture.head.bits = kBits;
    picture.head.planes = 3;
    picture.head.subsampleWidth = 1;
    picture.head.matrix = {'s', 'm', 'p', 't', 'e', '1', '7', '0', 'm'};
    for (int y = 0; y < height; ++y) {
        for (int plane = 0; plane < 3; ++plane) {
            const auto line = card.Line(plane, y);
            const float zero = plane == 0 ? 64 : 512;
            const float span = plane == 0 ? 876 : 896;
            for (std::size_t x = 0; x < line.size(); x += plane == 0 ? 1 : 2) {
                picture.planes.at(static_cast<std::size_t>(plane))
                    .push_back(static_cast<std::uint16_t>(std::lround(zero + span * line[x])));
            }
        }
    }
    return picture;
}

void CheckStill(benchmark::State& state) {
    lineup::DecodedPicture picture = Still(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const bool isDamaged = state.range(2) != 0;
    if (isDamaged) {
        picture.head.matrix = {};
    }
    const lineup::CheckSettings settings;
    bool isAsDue = true;
    for (auto turn : state) {
        lineup::picture::PictureExaminer examiner(TheClip(), settings);
        examiner.OnFacts({.frameRate = 0, .flags = lineup::decoding::kLossless, .isStill = 1, .codec = {}});
        examiner.OnPicture(picture);
        const auto findings = examiner.Findings();
        isAsDue = isAsDue && findings.isCardFound && findings.faults.empty() != isDamaged;
    }
    if (!isAsDue) {
        state.SkipWithError("the card was not found, or not what is wrong with it");
    }
    state.counters["ms_allowed"] = kAtOnceMs;
}
BENCHMARK(CheckStill)
    ->ArgNames({"width", "height", "damaged"})
    ->Args({1280, 720, 0})
    ->Args({1920, 1080, 0})
    ->Args({1920, 1080, 1})
    ->Args({3840, 2160, 0})
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

// Sums over luma of a card of UHD, of codes at once and value by value.
void SumPlane(benchmark::State& state) {
    constexpr int kWidth = 3840;
    constexpr int kHeight = 2160;
    static const lineup::DecodedPicture picture = Still(kWidth, kHeight);
    lineup::picture::Plane plane;
    plane.width = kWidth;
    plane.height = kHeight;
    plane.scale = 1.0F / (1U << (kBits - 8));
    plane.codes = picture.planes[0];
    const lineup::picture::Area all{0, 0, kWidth, kHeight};
    lineup::picture::GridChanges changes{};
    if (state.range(0) != 0) {
        bench::Race(state, 1, [&] { AddChanges(plane, all, true, changes); },
                    {{"plain", [&] { AddPlainChanges(plane, all, true, changes); }}});
    } else {
        bench::Race(state, 1, [&] { benchmark::DoNotOptimize(SumsIn(plane, all)); },
                    {{"plain", [&] { benchmark::DoNotOptimize(PlainSumsIn(plane, all)); }}});
    }
}
BENCHMARK(SumPlane)->ArgName("changes")->Arg(0)->Arg(1)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
