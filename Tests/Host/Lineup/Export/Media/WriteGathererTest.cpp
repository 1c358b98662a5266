#include "Host/Lineup/Export/Media/WriteGatherer.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

using lineup::TargetFile;
using lineup::WriteGatherer;

// Pieces of every order of size, written at the end and over what is there, against a string in memory.
TEST(WriteGatherer, WritesWhatItIsGivenWhereItIsGivenIt) {
    constexpr std::size_t kSizes[] = {0,       1,        4, 16, 5'760, 100'000, (1 << 18) - 1, 1 << 18, (1 << 20) - 1,
                                      1 << 20, 3'000'000};
    std::mt19937 random(20);
    const test::TemporaryFolder folder;
    TargetFile file(folder.Path() / "out", false);
    WriteGatherer gatherer(file);
    std::string expected;
    for (int piece = 0; piece < 300; ++piece) {
        if (random() % 8 == 0) {
            const auto position = static_cast<std::int64_t>(random() % (expected.size() + 1));
            ASSERT_TRUE(gatherer.Seek(position));
        }
        const auto at = static_cast<std::size_t>(gatherer.Position());
        const std::vector<std::uint8_t> bytes(kSizes[random() % std::size(kSizes)], static_cast<std::uint8_t>(piece));
        ASSERT_TRUE(gatherer.Write(bytes));
        expected.resize(std::max(expected.size(), at + bytes.size()));
        std::ranges::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(at),
                            static_cast<std::ptrdiff_t>(bytes.size()), static_cast<char>(piece));
        ASSERT_EQ(gatherer.Position(), static_cast<std::int64_t>(at + bytes.size()));
        ASSERT_EQ(gatherer.Size(), static_cast<std::int64_t>(expected.size()));
    }
    ASSERT_TRUE(gatherer.Flush());
    file.Commit(lineup::Disk::DoNotWait);
    EXPECT_TRUE(test::ReadFile(folder.Path() / "out") == expected);
}

}  // namespace
