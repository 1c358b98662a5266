#include "Src/BarsAndToneImporter/ColourBarTables.h"
#include "Tests/Src/BarsAndToneImporter/ExpectedCard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>

namespace {

void ExpectRows(const BarTable& table, std::span<const test::ExpectedBar> expected) {
    ASSERT_LT(expected.size(), table.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const BarRect& bar = table.at(i);
        EXPECT_EQ(bar.x0, expected[i].left) << i << ' ' << expected[i].name;
        EXPECT_EQ(bar.y0, expected[i].top) << i << ' ' << expected[i].name;
        EXPECT_EQ(bar.x1, expected[i].right) << i << ' ' << expected[i].name;
        EXPECT_EQ(bar.y1, expected[i].bottom) << i << ' ' << expected[i].name;
        EXPECT_EQ(bar.colour, expected[i].vuya) << i << ' ' << expected[i].name;
        EXPECT_EQ(bar.pad, 0U) << i << ' ' << expected[i].name;
    }
}

bool IsZero(const BarRect& bar) {
    return bar.x0 == 0.0 && bar.y0 == 0.0 && bar.x1 == 0.0 && bar.y1 == 0.0 &&
           bar.colour == std::array<std::uint8_t, 4>{} && bar.pad == 0;
}

TEST(ColourBarTables, HoldTheStandardDefinitionCard) {
    ExpectRows(NTSCYuvTable, test::kStandardDefinitionCard);
}

TEST(ColourBarTables, HoldTheHighDefinitionCard) {
    ExpectRows(HDYuvTable, test::kHighDefinitionCard);
}

TEST(ColourBarTables, HaveFortyFourRowsOfWhichTheUnusedAreZero) {
    EXPECT_EQ(NTSCYuvTable.size(), 44U);
    EXPECT_EQ(HDYuvTable.size(), 44U);
    EXPECT_TRUE(std::all_of(NTSCYuvTable.begin() + 22, NTSCYuvTable.end(), IsZero));
    EXPECT_TRUE(std::all_of(HDYuvTable.begin() + 29, HDYuvTable.end(), IsZero));
}

}  // namespace
