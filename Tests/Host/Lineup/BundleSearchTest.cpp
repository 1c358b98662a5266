#include "Host/Lineup/BundleSearch.h"
#include "Host/Lineup/Error.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

TEST(BundleSearch, LooksBesideTheProgramsFolderAndThenWhereItIsInstalled) {
    const auto places = lineup::BundleSearchPath();
    const fs::path prefix = fs::read_symlink("/proc/self/exe").parent_path().parent_path();
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(places[0], prefix / "BarsAndTone.bundle");
    EXPECT_EQ(places[1], prefix / "lib/lineup/BarsAndTone.bundle");
}

TEST(BundleSearch, FindsTheBundleOfTheBuildTree) {
    EXPECT_TRUE(fs::equivalent(lineup::FindBundle(), TEST_BUNDLE));
}

}  // namespace
