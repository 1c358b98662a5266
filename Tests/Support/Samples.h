#pragma once

#include "Tests/Support/GuardedBuffer.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <span>

namespace test {

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
        if (!IsOpposite(a[i], b[i])) {
            return testing::AssertionFailure() << "sample " << i << ": " << a[i] << " and " << b[i];
        }
    }
    return testing::AssertionSuccess();
}

/// Passes when nothing was ever written to the buffer.
inline testing::AssertionResult NeverWritten(const GuardedChannel& buffer) {
    const std::size_t written = buffer.Samples().size() - buffer.UnwrittenSamples();
    return written == 0 ? testing::AssertionSuccess() : testing::AssertionFailure() << written << " samples written";
}

}  // namespace test
