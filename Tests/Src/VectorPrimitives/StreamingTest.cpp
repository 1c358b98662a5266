#include "Src/VectorPrimitives/Streaming.h"

#include <gtest/gtest.h>

namespace {

using vectorkernels::FloatsToBoundary;
using vectorkernels::IsStreamed;
using vectorkernels::StreamedAbove;

constexpr std::int64_t kAbove = 100;

class Streaming : public testing::Test {
protected:
    alignas(64) float mSource[32] = {};
    alignas(64) float mDestination[32] = {};
};

TEST_F(Streaming, BeginsLaterWhereRegistersAreWide) {
    for (const std::size_t narrow : {4U, 16U}) {
        EXPECT_EQ(StreamedAbove(narrow), 131'072);
    }
    for (const std::size_t wide : {17U, 32U, 64U}) {
        EXPECT_EQ(StreamedAbove(wide), 4'194'304);
    }
}

TEST_F(Streaming, IsForMoreFloatsThanTheLimit) {
    EXPECT_FALSE(IsStreamed(mSource, mDestination, 0, kAbove, 32));
    EXPECT_FALSE(IsStreamed(mSource, mDestination, kAbove, kAbove, 32));
    EXPECT_TRUE(IsStreamed(mSource, mDestination, kAbove + 1, kAbove, 32));
}

TEST_F(Streaming, IsBetweenBoundariesOfARegister) {
    for (const std::size_t bytes : {16U, 32U, 64U}) {
        for (std::size_t past = 0; past < 16; ++past) {
            const bool onBoundary = past * sizeof(float) % bytes == 0;
            EXPECT_EQ(IsStreamed(mSource + past, mDestination, kAbove + 1, kAbove, bytes), onBoundary) << past;
            EXPECT_EQ(IsStreamed(mSource, mDestination + past, kAbove + 1, kAbove, bytes), onBoundary) << past;
        }
    }
}

TEST_F(Streaming, BeginsAfterTheFloatsBeforeABoundary) {
    for (const std::size_t bytes : {4U, 16U, 32U, 64U}) {
        const auto lanes = static_cast<std::int64_t>(bytes / sizeof(float));
        for (std::int64_t past = 0; past < 16; ++past) {
            EXPECT_EQ(FloatsToBoundary(mSource + past, bytes), (lanes - past % lanes) % lanes) << past;
        }
    }
}

TEST_F(Streaming, IsNotInPlace) {
    EXPECT_FALSE(IsStreamed(mSource, mSource, kAbove + 1, kAbove, 32));
}

}  // namespace
