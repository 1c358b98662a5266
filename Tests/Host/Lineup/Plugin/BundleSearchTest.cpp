#include <lineup/BundleSearch.h>
#include <lineup/Error.h>

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

TEST(BundleSearch, FindsTheBundleOfTheLibrary) {
    EXPECT_TRUE(fs::equivalent(lineup::FindBundle(lineup::LibraryPrefix()), TEST_BUNDLE));
}

TEST(InstalledPrefix, IsTheFolderAboveTheOneOfLibraries) {
    EXPECT_EQ(lineup::PrefixOf("/usr/lib/x86_64-linux-gnu/mlt-7/libmltlineup.so"), "/usr");
    EXPECT_EQ(lineup::PrefixOf("/home/ann/.local/lib/liblineup.so"), "/home/ann/.local");
    EXPECT_EQ(lineup::PrefixOf("/opt/a/lib64/mlt-7/libmltlineup.so"), "/opt/a");
}

TEST(InstalledPrefix, IsUnknownOutsideSuchAFolder) {
    EXPECT_THROW((void)lineup::PrefixOf("/opt/mlt-7/libmltlineup.so"), lineup::Error);
}

}  // namespace
