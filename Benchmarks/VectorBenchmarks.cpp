#include "Benchmarks/Race.h"
#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/VectorPrimitives/VectorPrimitives.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

// The float-buffer primitives, variant by variant, against the loop a compiler makes of the same sentence
// and against the C library's copy and fill of the same bytes.

namespace {

// A plain loop as anyone would write it, kept from being inlined so that it knows as little of its buffers
// as the primitives do.
[[gnu::noinline]] void CopyLoop(const float* source, float* destination, int len) {
    for (int i = 0; i < len; ++i) {
        destination[i] = source[i];
    }
}

[[gnu::noinline]] void ZeroLoop(float* destination, int len) {
    for (int i = 0; i < len; ++i) {
        destination[i] = 0.0F;
    }
}

[[gnu::noinline]] void MultiplyLoop(const float* source, float val, float* destination, int len) {
    for (int i = 0; i < len; ++i) {
        destination[i] = source[i] * val;
    }
}

#define VECTOR_NAME(level, ...) #level,
constexpr std::array<const char*, kVectorVariantCount> kVariantNames = {VECTOR_LEVELS(VECTOR_NAME)};
#undef VECTOR_NAME

// A short buffer, a tenth of a second at 48 kHz, a second, and one larger than the inner caches.
constexpr std::array<int, 4> kLengths = {256, 4800, 48'000, 1'048'576};
constexpr int kFloatsPerTurn = 262'144;
constexpr int kTurns = 300;
constexpr float kGain = 0.125F;

// Floats on a cache line's boundary, as a host's buffers are.
class Floats {
public:
    explicit Floats(int len) : mMemory(static_cast<std::size_t>(len) + kLine, 0.5F) {
        const auto beyond = reinterpret_cast<std::uintptr_t>(mMemory.data()) / sizeof(float) % kLine;
        mFirst = mMemory.data() + (kLine - beyond) % kLine;
    }
    [[nodiscard]] float* Data() const { return mFirst; }

private:
    static constexpr std::size_t kLine = 16;
    std::vector<float> mMemory;
    float* mFirst;
};

// One source, and a destination for each contender: none finds its lines warmed or cooled by another.
struct Buffers {
    explicit Buffers(int len)
        : floats(len),
          bytes(static_cast<std::size_t>(len) * sizeof(float)),
          callsPerTurn(std::max(1, kFloatsPerTurn / len)),
          source(len),
          subject(len),
          loop(len),
          library(len) {}

    int floats;
    std::size_t bytes;
    int callsPerTurn;
    Floats source;
    Floats subject;
    Floats loop;
    Floats library;
};

void CopyRace(benchmark::State& state, std::int32_t variant, int len) {
    ippJumpIndexForMergedLibs = variant;
    const Buffers b(len);
    bench::Race(state, b.callsPerTurn, [&] { ippsCopy_32f(b.source.Data(), b.subject.Data(), b.floats); },
                {{"loop", [&] { CopyLoop(b.source.Data(), b.loop.Data(), b.floats); }},
                 {"memcpy", [&] { std::memcpy(b.library.Data(), b.source.Data(), b.bytes); }}});
}

void ZeroRace(benchmark::State& state, std::int32_t variant, int len) {
    ippJumpIndexForMergedLibs = variant;
    const Buffers b(len);
    bench::Race(state, b.callsPerTurn, [&] { ippsZero_32f(b.subject.Data(), b.floats); },
                {{"loop", [&] { ZeroLoop(b.loop.Data(), b.floats); }},
                 {"memset", [&] { std::memset(b.library.Data(), 0, b.bytes); }}});
}

void MultiplyRace(benchmark::State& state, std::int32_t variant, int len) {
    ippJumpIndexForMergedLibs = variant;
    const Buffers b(len);
    bench::Race(state, b.callsPerTurn, [&] { ippsMulC_32f(b.source.Data(), kGain, b.subject.Data(), b.floats); },
                {{"loop", [&] { MultiplyLoop(b.source.Data(), kGain, b.loop.Data(), b.floats); }},
                 {"memcpy", [&] { std::memcpy(b.library.Data(), b.source.Data(), b.bytes); }}});
}

void MultiplyInPlaceRace(benchmark::State& state, std::int32_t variant, int len) {
    ippJumpIndexForMergedLibs = variant;
    const Buffers b(len);
    // Doubled and halved by turns: the values stay ordinary numbers.
    float gain = 0.5F;
    float loopGain = 0.5F;
    const auto next = [](float& value) { return value = 1.0F / value; };
    bench::Race(state, b.callsPerTurn, [&] { ippsMulC_32f(b.subject.Data(), next(gain), b.subject.Data(), b.floats); },
                {{"loop", [&] { MultiplyLoop(b.loop.Data(), next(loopGain), b.loop.Data(), b.floats); }}});
}

struct Primitive {
    const char* name;
    void (*race)(benchmark::State&, std::int32_t, int);
};
constexpr std::array<Primitive, 4> kPrimitives = {{
    {"copy", CopyRace},
    {"zero", ZeroRace},
    {"multiply", MultiplyRace},
    {"multiply_in_place", MultiplyInPlaceRace},
}};

void RegisterAll() {
    ippSafeInit();
    const std::int32_t best = ippJumpIndexForMergedLibs;
    for (const Primitive& primitive : kPrimitives) {
        for (const int len : kLengths) {
            for (std::int32_t variant = 0; variant <= best; ++variant) {
                const std::string name = std::string(primitive.name) + "/" + std::to_string(len) + "/" +
                                         kVariantNames.at(static_cast<std::size_t>(variant));
                benchmark::RegisterBenchmark(name.c_str(), primitive.race, variant, len)
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
