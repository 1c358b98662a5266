#pragma once

#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>

namespace test {

/// The same bits, or not a number on both sides: the sign and payload of a computed not-a-number are the
/// processor's own affair. A sample that was never written is the same as nothing but itself.
inline bool SameSample(float a, float b) {
    if (std::isnan(a) && std::isnan(b)) {
        return IsUnwritten(a) == IsUnwritten(b);
    }
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

/// Passes when all samples are the same; says where the first one is that is not.
inline testing::AssertionResult SameSamples(std::span<const float> actual, std::span<const float> expected) {
    if (actual.size() != expected.size()) {
        return testing::AssertionFailure() << actual.size() << " samples, not " << expected.size();
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (!SameSample(actual[i], expected[i])) {
            return testing::AssertionFailure() << "sample " << i << " is " << actual[i] << ", not " << expected[i]
                                               << (IsUnwritten(actual[i]) ? " (never written)" : "");
        }
    }
    return testing::AssertionSuccess();
}

/// Passes when every sample is exactly `value`.
inline testing::AssertionResult AllAre(std::span<const float> samples, float value) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (!SameSample(samples[i], value)) {
            return testing::AssertionFailure() << "sample " << i << " is " << samples[i] << ", not " << value;
        }
    }
    return testing::AssertionSuccess();
}

/// Passes when `b[i]` is `a[i]` times -1 throughout.
inline testing::AssertionResult Opposite(std::span<const float> a, std::span<const float> b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        const bool opposite = std::isnan(a[i]) ? std::isnan(b[i]) : SameSample(-a[i], b[i]);
        if (!opposite) {
            return testing::AssertionFailure() << "sample " << i << ": " << a[i] << " and " << b[i];
        }
    }
    return testing::AssertionSuccess();
}

/// Passes when nothing was ever written to the buffer.
inline testing::AssertionResult NeverWritten(GuardedBuffer& buffer) {
    const std::size_t written = buffer.Samples().size() - buffer.UnwrittenSamples();
    return written == 0 ? testing::AssertionSuccess() : testing::AssertionFailure() << written << " samples written";
}

}  // namespace test
