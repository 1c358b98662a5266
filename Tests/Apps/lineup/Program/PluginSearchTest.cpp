#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

// The program where somebody copied it to, with its libraries and its plug-in.
class PluginSearch : public test::TestFolder {
protected:
    PluginSearch() {
        fs::create_directories(Prefix() / "bin");
        fs::copy_file(TEST_LINEUP, Prefix() / "bin" / "lineup");
        fs::create_directories(Prefix() / "lib");
        for (const char* const library : {TEST_LIBRARY, TEST_SERVICES}) {
            fs::copy(library, Prefix() / "lib");
        }
        fs::copy(TEST_BUNDLE, Bundle(), fs::copy_options::recursive);
    }

    [[nodiscard]] fs::path Prefix() const { return Folder() / "tools"; }
    [[nodiscard]] fs::path Bundle() const { return Prefix() / "BarsAndTone.bundle"; }

    [[nodiscard]] test::RunResult Lineup(const std::string& arguments) const {
        // A second bundle in the current folder is of no interest.
        return test::RunProgram(
            "cd '" + Folder().string() + "' && '" + (Prefix() / "bin/lineup").string() + "' " + arguments, Folder());
    }
};

TEST_F(PluginSearch, TakesTheBundleBesideTheProgramsFolder) {
    const auto result = Lineup("info");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(Bundle().string()));
}

// The library is another installation's, with a bundle of its own.
TEST_F(PluginSearch, TakesTheProgramsOwnBundleBeforeThatOfItsLibrary) {
    fs::remove_all(Prefix() / "lib");
    const fs::path program = Prefix() / "bin/lineup";
    const std::string command =
        "LD_LIBRARY_PATH='" + fs::path(TEST_LIBRARY).parent_path().string() + "' '" + program.string() + "' info";
    EXPECT_THAT(test::RunProgram(command, Folder()).out, HasSubstr(Bundle().string()));
    fs::remove_all(Bundle());
    EXPECT_THAT(test::RunProgram(command, Folder()).out, HasSubstr(TEST_BUNDLE));
}

// What it loads on demand was left out of this installation.
TEST_F(PluginSearch, OfAProgramWithoutALibraryForACommandSaysWhichIsNotInstalled) {
    EXPECT_EQ(Lineup("render tone.wav --quiet").exitCode, 0);
    const auto result = Lineup("check tone.wav");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("liblineup-check.so is not installed"));
}

TEST_F(PluginSearch, RefusesABundleThatEverybodyCanWriteToUnlessItIsNamed) {
    fs::permissions(Prefix(), fs::perms::others_write, fs::perm_options::add);
    const auto result = Lineup("info");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, AllOf(HasSubstr("will not use the plug-in at " + Bundle().string() + " unasked"),
                                  HasSubstr(Prefix().string() + " can be written to by everybody")));
    EXPECT_EQ(Lineup("info --plugin '" + Bundle().string() + "'").exitCode, 0);
}

TEST_F(PluginSearch, TakesNoBundleFromTheCurrentFolder) {
    fs::rename(Bundle(), Folder() / "BarsAndTone.bundle");
    const auto result = Lineup("info");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("cannot find the plug-in"));
}

TEST_F(PluginSearch, IsToldByTheHelp) {
    EXPECT_THAT(Lineup("--help").out, HasSubstr("BarsAndTone.bundle beside the folder of this program"));
}

}  // namespace
