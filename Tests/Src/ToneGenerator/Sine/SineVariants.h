#pragma once

#include "Host/Interface/Core/VectorRuntime.h"
#include "Src/ToneGenerator/Sine/PlainSine.h"
#include "Src/ToneGenerator/Sine/SineKernels.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <iomanip>
#include <limits>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace sine {

inline void PrintTo(const Wave& wave, std::ostream* out) {
    *out << std::setprecision(std::numeric_limits<double>::max_digits10) << "phase " << wave.phase << ", step "
         << wave.step << ", amplitude " << wave.amplitude;
}

}  // namespace sine

namespace test {

struct SineVariant {
    const char* name;
    const sine::Kernels* kernels;
    bool runsHere;
};

inline void PrintTo(const SineVariant& variant, std::ostream* out) {
    *out << variant.name;
}

/// Every variant there is; portable is not behind any index of this machine.
inline std::vector<SineVariant> SineVariants() {
    ippSafeInit();
    const std::int32_t best = ippJumpIndexForMergedLibs;
    return {
#define VECTOR_ROW(level, enumerator, ...) {#level, &sine::level::kKernels, best >= enumerator},
        VECTOR_LEVELS(VECTOR_ROW)
#undef VECTOR_ROW
            {"portable", &sine::portable::kKernels, true},
    };
}

/// Runs a test with each variant; one that this processor does not run is skipped.
class SineVariantTest : public testing::TestWithParam<SineVariant> {
protected:
    void SetUp() override {
        if (!GetParam().runsHere) {
            GTEST_SKIP() << "this processor does not run " << GetParam().name;
        }
    }
};

inline std::string SineVariantName(const testing::TestParamInfo<SineVariant>& info) {
    return info.param.name;
}

/// The wave by its definition.
inline std::vector<float> Plain(const sine::Wave& wave, std::size_t count) {
    std::vector<float> samples(count);
    sine::WritePlain(wave, samples.data(), static_cast<long long>(count));
    return samples;
}

inline testing::AssertionResult AreTheSameBits(std::span<const float> expected, std::span<const float> got) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (std::bit_cast<std::uint32_t>(expected[i]) != std::bit_cast<std::uint32_t>(got[i])) {
            return testing::AssertionFailure()
                   << std::hexfloat << "sample " << i << " is " << got[i] << " instead of " << expected[i];
        }
    }
    return testing::AssertionSuccess();
}

}  // namespace test
