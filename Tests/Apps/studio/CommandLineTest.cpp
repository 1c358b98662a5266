#include "Apps/studio/CommandLine.h"
#include "Apps/version/BuildVersion.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

std::string FileOf(const std::string& commandLine) {
    studio::Arguments arguments;
    studio::MakeCommandLine(arguments)->parse(commandLine);
    return arguments.file;
}

TEST(StudioCommandLine, TakesADocument) {
    EXPECT_EQ(FileOf("/home/ann/news.lineup"), "/home/ann/news.lineup");
    EXPECT_EQ(FileOf(""), "");
}

TEST(StudioCommandLine, TakesWhatFollowsTwoDashesForADocument) {
    EXPECT_EQ(FileOf("-- --help"), "--help");
}

TEST(StudioCommandLine, RefusesASecondDocument) {
    EXPECT_THROW((void)FileOf("a.lineup b.lineup"), CLI::ParseError);
}

class StudioProgram : public test::TestFolder {
protected:
    // Runs the program where there is no display.
    [[nodiscard]] test::RunResult Run(const std::string& arguments) const {
        return test::RunProgram("env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM '" TEST_STUDIO "' " + arguments,
                                Folder());
    }
};

TEST_F(StudioProgram, TellsItsVersionAndItsHelpWithoutADisplay) {
    const auto version = Run("--version");
    EXPECT_EQ(version.exitCode, 0) << version.err;
    EXPECT_EQ(version.out, "lineup-studio " + apps::BuildVersion() + "\n");
    const auto help = Run("--help");
    EXPECT_EQ(help.exitCode, 0) << help.err;
    EXPECT_THAT(help.out, HasSubstr("The document to open"));
}

TEST_F(StudioProgram, EndsWithTwoWhenItIsUsedWrongly) {
    const auto result = test::RunProgram("QT_QPA_PLATFORM=offscreen '" TEST_STUDIO "' --colour", Folder());
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("--colour"));
}

}  // namespace
