// Sums over a plane, of codes at once and value by value.
#include "Host/Lineup/Check/Picture/Measure/PlaneSums.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

using lineup::picture::AddChanges;
using lineup::picture::AddPlainChanges;
using lineup::picture::Area;
using lineup::picture::GridChanges;
using lineup::picture::PlainSumsIn;
using lineup::picture::SumsIn;

constexpr int kColumns = 61;
constexpr int kLines = 23;

std::vector<std::uint16_t> Noise(unsigned bits) {
    std::vector<std::uint16_t> codes;
    for (std::uint32_t state = bits; codes.size() < std::size_t{kColumns} * kLines;) {
        state = state * 1664525U + 1013904223U;
        codes.push_back(static_cast<std::uint16_t>(state >> (32U - bits)));
    }
    return codes;
}

constexpr std::array<Area, 6> kAreas = {
    {{0, 0, kColumns, kLines}, {3, 2, 60, 21}, {5, 5, 6, 6}, {7, 3, 15, 4}, {9, 9, 9, 9}, {0, 22, 8, 23}}};

// As limited range has them, and as R'G'B' of full range, whose values are rounded.
TEST(PlaneSums, AreToTheBitThoseOfValueAfterValue) {
    for (const unsigned bits : {1U, 8U, 10U, 12U, 16U}) {
        const std::vector<std::uint16_t> codes = Noise(bits);
        const float ofRgb = 255.0F / static_cast<float>((1U << bits) - 1U);
        for (const float scale : {std::ldexp(1.0F, 8 - static_cast<int>(bits)), ofRgb}) {
            lineup::picture::Plane plane;
            plane.width = kColumns;
            plane.height = kLines;
            plane.scale = scale;
            plane.codes = codes;
            GridChanges changes{};
            GridChanges plain{};
            for (const Area& area : kAreas) {
                EXPECT_EQ(SumsIn(plane, area), PlainSumsIn(plane, area)) << bits << ", " << area.left;
                for (const bool across : {true, false}) {
                    AddChanges(plane, area, across, changes);
                    AddPlainChanges(plane, area, across, plain);
                    EXPECT_EQ(changes, plain) << bits << ", " << area.left << ", " << across;
                }
            }
            EXPECT_GT(changes[0], 0);
        }
    }
}

}  // namespace
