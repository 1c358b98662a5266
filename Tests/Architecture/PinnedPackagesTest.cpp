#include "Tests/Architecture/SourceTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

// The lock file pins what is fetched by its contents; where from is each machine's own affair.
TEST(PinnedPackages, AreNamedByTheirContentsAndNotByAPlace) {
    const auto files = test::ReadSources({"Packaging"}, {"package-lock.json"});
    ASSERT_THAT(files, SizeIs(1));
    const auto& lines = files.front().lines;
    const auto count = [&lines](const std::string& text) {
        return std::ranges::count_if(lines,
                                     [&](const std::string& line) { return line.find(text) != std::string::npos; });
    };
    EXPECT_GT(count("\"node_modules/"), 0);
    EXPECT_EQ(count("\"integrity\": \"sha512-"), count("\"node_modules/"));
    for (const std::string& line : lines) {
        EXPECT_THAT(line, Not(HasSubstr("://")));
    }
}

}  // namespace
