#include "Tests/Support/Importer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <set>
#include <vector>

namespace {

using test::Placement;
using test::Request;
using test::RequestRecord;

// An index in the place of a pointer, as the enumeration requests carry it.
void* AsPointer(std::intptr_t index) {
    return reinterpret_cast<void*>(index);
}

// A record large enough for every request.
constexpr std::size_t kAnyRecordSize = 1024;

const std::set<std::int32_t> kServedSelectors = {0, 5, 9, 14, 25, 27, 28, 37, 38, 49};

std::vector<std::int32_t> UnservedSelectors() {
    std::vector<std::int32_t> selectors = {std::numeric_limits<std::int32_t>::min(),
                                           std::numeric_limits<std::int32_t>::max()};
    for (std::int32_t selector = -1; selector <= 100; ++selector) {
        if (!kServedSelectors.contains(selector)) {
            selectors.push_back(selector);
        }
    }
    for (const std::int32_t served : kServedSelectors) {
        selectors.push_back(served + 0x100);    // the same in its lowest byte
        selectors.push_back(served + 0x10000);  // the same in its lower half
        if (served != 0) {
            selectors.push_back(-served);
        }
    }
    return selectors;
}

const std::vector<std::intptr_t> kIndicesPastTheEnd = {1,
                                                       -1,
                                                       2,
                                                       256,
                                                       std::intptr_t{1} << 32,  // 0 in its lower half
                                                       std::numeric_limits<std::intptr_t>::max(),
                                                       std::numeric_limits<std::intptr_t>::min()};

class EntryPointRecords : public testing::TestWithParam<Placement> {};
INSTANTIATE_TEST_SUITE_P(Placements, EntryPointRecords, testing::ValuesIn(test::kPlacements));

TEST_P(EntryPointRecords, AnswersThreeToEveryOtherSelectorAndWritesNothing) {
    RequestRecord first(kAnyRecordSize, GetParam());
    RequestRecord second(kAnyRecordSize, GetParam());
    for (const std::int32_t selector : UnservedSelectors()) {
        EXPECT_EQ(Request(selector, first.Data(), second.Data()), 3) << "selector " << selector;
        EXPECT_TRUE(first.IsUntouched() && second.IsUntouched()) << "selector " << selector;
    }
}

TEST_P(EntryPointRecords, AnswersSelector28WithOneHundredAndWritesNothing) {
    RequestRecord first(kAnyRecordSize, GetParam());
    RequestRecord second(kAnyRecordSize, GetParam());
    EXPECT_EQ(Request(28, first.Data(), second.Data()), 100);
    EXPECT_TRUE(first.IsUntouched());
    EXPECT_TRUE(second.IsUntouched());
}

TEST_P(EntryPointRecords, InitSetsFourCapabilitiesAndNoOtherByte) {
    RequestRecord info(test::kInitRecordSize, GetParam());
    RequestRecord second(kAnyRecordSize, GetParam());
    EXPECT_EQ(Request(0, info.Data(), second.Data()), 400);
    EXPECT_EQ(info.Get<std::uint32_t>(28), 1U);
    EXPECT_EQ(info.Get<std::uint32_t>(32), 1U);
    EXPECT_EQ(info.Get<std::uint32_t>(36), 1U);
    EXPECT_EQ(info.Get<std::uint32_t>(44), 1U);
    EXPECT_EQ(info.ChangedOutside({{28, 4}, {32, 4}, {36, 4}, {44, 4}}), "");
    EXPECT_TRUE(second.IsUntouched());
}

TEST_P(EntryPointRecords, DescribesTheOneFileFormat) {
    RequestRecord format(test::kFileFormatRecordSize, GetParam());
    EXPECT_EQ(Request(14, AsPointer(0), format.Data()), 0);
    EXPECT_EQ(format.Get<std::uint32_t>(0), 0x58514E56U);  // 'X' 0x58, 'Q' 0x51, 'N' 0x4E, 'V' 0x56
    EXPECT_EQ(format.Get<char>(12), '\0');
    EXPECT_EQ(format.Get<char>(268), '\0');
    for (std::size_t i = 0; i < 256; ++i) {
        EXPECT_EQ(format.Get<char>(300 + i), '\0') << "extension byte " << i;
    }
    EXPECT_EQ(format.ChangedOutside({{0, 4}, {12, 1}, {268, 1}, {300, 256}}), "");
}

TEST_P(EntryPointRecords, HasNoSecondFileFormat) {
    RequestRecord format(test::kFileFormatRecordSize, GetParam());
    for (const std::intptr_t index : kIndicesPastTheEnd) {
        EXPECT_EQ(Request(14, AsPointer(index), format.Data()), 301) << "index " << index;
        EXPECT_TRUE(format.IsUntouched()) << "index " << index;
    }
}

TEST_P(EntryPointRecords, NamesTheOnePixelFormat) {
    RequestRecord format(test::kPixelFormatRecordSize, GetParam());
    EXPECT_EQ(Request(27, AsPointer(0), format.Data()), 0);
    EXPECT_EQ(format.Get<char>(8), 'V');
    EXPECT_EQ(format.Get<char>(9), 'U');
    EXPECT_EQ(format.Get<char>(10), 'x');
    EXPECT_EQ(format.Get<char>(11), '7');
    EXPECT_EQ(format.ChangedOutside({{8, 4}}), "");
}

TEST_P(EntryPointRecords, HasNoSecondPixelFormat) {
    RequestRecord format(test::kPixelFormatRecordSize, GetParam());
    for (const std::intptr_t index : kIndicesPastTheEnd) {
        EXPECT_EQ(Request(27, AsPointer(index), format.Data()), 301) << "index " << index;
        EXPECT_TRUE(format.IsUntouched()) << "index " << index;
    }
}

TEST(EntryPoint, EnumeratingPastTheEndNeedsNoRecord) {
    EXPECT_EQ(Request(14, AsPointer(1), nullptr), 301);
    EXPECT_EQ(Request(27, AsPointer(1), nullptr), 301);
}

TEST(EntryPoint, NeverLooksAtTheHostsServiceTable) {
    auto* const unusable = reinterpret_cast<imStdParms*>(std::intptr_t{16});  // no such address: a look crashes
    RequestRecord record(kAnyRecordSize, {.filler = 0});
    EXPECT_EQ(Request(0, record.Data(), nullptr, unusable), 400);
    EXPECT_EQ(Request(5, nullptr, record.Data(), unusable), 3);
    EXPECT_EQ(Request(9, nullptr, nullptr, unusable), 0);
    EXPECT_EQ(Request(14, AsPointer(0), record.Data(), unusable), 0);
    EXPECT_EQ(Request(27, AsPointer(0), record.Data(), unusable), 0);
    EXPECT_EQ(Request(28, nullptr, nullptr, unusable), 100);
    EXPECT_EQ(Request(50, nullptr, nullptr, unusable), 3);

    RequestRecord info(test::kInfoRecordSize, {.filler = 0});
    EXPECT_EQ(Request(37, nullptr, info.Data(), unusable), 0);
    EXPECT_EQ(Request(9, nullptr, info.Get<void*>(198), unusable), 0);

    RequestRecord prefs(test::kPrefsRecordSize, {.filler = 0});
    EXPECT_EQ(Request(38, nullptr, prefs.Data(), unusable), 0);
    RequestRecord audio(test::kAudioRecordSize, {.filler = 0});
    EXPECT_EQ(Request(25, nullptr, audio.Data(), unusable), 5);
    RequestRecord peaks(test::kPeakRecordSize, {.filler = 0});
    EXPECT_EQ(Request(49, nullptr, peaks.Data(), unusable), 5);
}

}  // namespace
