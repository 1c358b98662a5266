#include <lineup/Idents.h>
#include <lineup/Importer.h>
#include <lineup/services/FrameBuffer.h>
#include "Benchmarks/Race.h"
#include "Host/Interface/Frame/FrameServices.h"
#include "Host/Interface/Frame/PixelFormats.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

// Whole requests to the built bundle, as a host makes them: the card against memset of its memory, an ident
// against the plain sine of one channel and five copies, an hour's overview against writing its memory once.

namespace {

using lineup::Ident;
using lineup::Importer;

constexpr int kTurns = 100;
constexpr int kChannels = 6;

const Importer& Plugin() {
    static const Importer plugin(BENCHMARK_BUNDLE);
    return plugin;
}

/// Memory for six channels, touched before it is measured.
class Channels {
public:
    explicit Channels(std::size_t samples) : mMemory(kChannels, std::vector<float>(samples, 0.5F)) {
        for (std::size_t c = 0; c < kChannels; ++c) {
            mPointers.at(c) = mMemory[c].data();
        }
    }
    float** Pointers() { return mPointers.data(); }
    [[nodiscard]] std::size_t Bytes() const { return mMemory.front().size() * sizeof(float); }

private:
    std::vector<std::vector<float>> mMemory;
    std::array<float*, kChannels> mPointers{};
};

void RaceCard(benchmark::State& state, int width, int height, std::uint32_t pixelFormat) {
    zelcore::FrameBuffer frame(width, height, pixelFormat);
    const std::size_t bytes = static_cast<std::size_t>(frame.RowBytes()) * static_cast<std::size_t>(height);
    std::memset(frame.Handle()->pixels, 0, bytes);  // a page touched for the first time costs more than filling it
    bench::Race(state, 1, [&] { Plugin().DrawFrame(frame); },
                {{"memset", [&] { std::memset(frame.Handle()->pixels, 0x55, bytes); }}});
}

lineup::BarsAndToneInfo SettingsFor(const Ident& ident) {
    lineup::BarsAndToneInfo settings = Plugin().DefaultSettings(48'000.0F);
    settings.numChannels = ident.numChannels;
    settings.identifyChannels = 1;
    settings.identifierFormat = ident.format;
    return settings;
}

void WritePlainSine(float* out, std::uint32_t count, double step) {
    double phase = 0.0;
    for (std::uint32_t i = 0; i < count; ++i) {
        out[i] = static_cast<float>(std::sin(phase) * 0.125);
        phase += step;
    }
}

// From the clip's start on in requests of `count` samples, over 13.4 s: the longest cycle.
void RaceIdent(benchmark::State& state, const Ident& ident, std::uint32_t count) {
    constexpr std::int64_t kSamples = 643'200;
    const lineup::BarsAndToneInfo settings = SettingsFor(ident);
    Channels channels(count);
    const auto eachRequest = [&](auto request) {
        for (std::int64_t position = 0; position < kSamples; position += count) {
            request(position);
        }
    };
    bench::Race(state, 1,
                [&] {
                    eachRequest([&](std::int64_t position) {
                        Plugin().ReadAudio({.prefs = &settings}, position, count, channels.Pointers());
                    });
                },
                {{"plain", [&] {
                      eachRequest([&](std::int64_t /*position*/) {
                          float** const out = channels.Pointers();
                          WritePlainSine(out[0], count, 0.13);
                          for (std::uint32_t c = 1; c < ident.numChannels; ++c) {
                              std::memcpy(out[c], out[0], channels.Bytes());
                          }
                      });
                  }}});
}

void RacePeaks(benchmark::State& state, const lineup::BarsAndToneInfo& settings) {
    constexpr std::int32_t kColumns = 2000;
    constexpr float kHour = 3600.0F;
    Channels maxima(kColumns);
    Channels minima(kColumns);
    bench::Race(state, 10,
                [&] {
                    Plugin().ReadPeaks({.prefs = &settings}, 0, kColumns / kHour, kColumns, maxima.Pointers(),
                                       minima.Pointers());
                },
                {{"memset", [&] {
                      for (std::uint32_t c = 0; c < settings.numChannels; ++c) {
                          std::memset(maxima.Pointers()[c], 0x55, maxima.Bytes());
                          std::memset(minima.Pointers()[c], 0x55, minima.Bytes());
                      }
                  }}});
    state.counters["ms_a_channel"] = state.counters["best_ns"] / 1e6 / settings.numChannels;
}

void Register(const std::string& name, const std::function<void(benchmark::State&)>& race) {
    benchmark::RegisterBenchmark(name.c_str(), race)->UseManualTime()->Iterations(kTurns);
}

void RegisterAll() {
    struct Card {
        const char* name;
        int width;
        int height;
        std::uint32_t pixelFormat;
    };
    for (const Card& card : {Card{"card/1920x1080_float", 1920, 1080, kPixelFormat_VUYA_32f},
                             Card{"card/3840x2160_float", 3840, 2160, kPixelFormat_VUYA_32f},
                             Card{"card/1920x1080_8bit", 1920, 1080, kPixelFormat_VUYA_8u}}) {
        Register(card.name,
                 [card](benchmark::State& state) { RaceCard(state, card.width, card.height, card.pixelFormat); });
    }
    for (const Ident& ident : lineup::Idents()) {
        for (const std::uint32_t count : {1920U, 2002U, 4800U, 48'000U}) {
            Register("ident/" + std::string(ident.name) + "/" + std::to_string(count),
                     [ident, count](benchmark::State& state) { RaceIdent(state, ident, count); });
        }
        Register("hour_overview/" + std::string(ident.name),
                 [ident](benchmark::State& state) { RacePeaks(state, SettingsFor(ident)); });
    }
    Register("hour_overview/tone",
             [](benchmark::State& state) { RacePeaks(state, Plugin().DefaultSettings(48'000.0F)); });
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunAll(argc, argv, RegisterAll);
}
