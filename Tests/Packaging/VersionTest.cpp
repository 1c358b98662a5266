// The version stands in the file VERSION, and everything that names it says the same.
#include "Tests/Architecture/ModuleSymbols.h"
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using test::kPrefix;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string kVersion = [] {
    std::string text = test::ReadFile(TEST_SOURCE_DIR "/VERSION");
    return text.substr(0, text.find('\n'));
}();

class Version : public test::InFolder {
protected:
    [[nodiscard]] static std::string Quoted(const fs::path& path) { return "'" + (kPrefix / path).string() + "'"; }
};

TEST_F(Version, IsThatOfThePrograms) {
    EXPECT_EQ(Output(Quoted("bin/lineup") + " --version"), "lineup " TEST_BUILD_VERSION "\n");
    EXPECT_EQ(Output(Quoted("bin/lineup-studio") + " --version"), "lineup-studio " TEST_BUILD_VERSION "\n");
}

TEST_F(Version, OfALaterCommitIsLaterAndNamesTheCommit) {
    const std::string git = "git -C " TEST_SOURCE_DIR " ";
    const std::string count = Output(git + "rev-list --count $(" + git + "log -1 --format=%H -- VERSION)..HEAD");
    if (count == "0\n") {
        EXPECT_EQ(TEST_BUILD_VERSION, kVersion);
    } else {
        const std::string since = count.substr(0, count.find('\n'));
        EXPECT_EQ(TEST_BUILD_VERSION "\n", kVersion + "+git" + since + "." + Output(git + "rev-parse --short=10 HEAD"));
        (void)Output("dpkg --compare-versions " TEST_BUILD_VERSION " gt " + kVersion);
        (void)Output("dpkg --compare-versions " TEST_BUILD_VERSION " lt " + kVersion + "+git" +
                     std::to_string(std::stoi(since) + 1));
    }
}

TEST_F(Version, IsThatOfThePlugIn) {
    EXPECT_THAT(Output(Quoted("bin/lineup") + " info"), HasSubstr("org.barsandtone.importer " + kVersion + "\n"));
}

TEST_F(Version, NamesTheFilesOfTheLibraries) {
    for (const std::string library : {"liblineup.so", "libzelcore.so"}) {
        const fs::path file = kPrefix / TEST_LIBDIR / (library + "." + kVersion);
        ASSERT_TRUE(fs::is_regular_file(file)) << file;
        EXPECT_TRUE(kVersion.starts_with(TEST_SOVERSION));
        EXPECT_THAT(test::DynamicEntries(file, "SONAME"), ElementsAre(library + "." TEST_SOVERSION));
        EXPECT_TRUE(fs::equivalent(kPrefix / TEST_LIBDIR / library, file));
        EXPECT_TRUE(fs::equivalent(kPrefix / TEST_LIBDIR / (library + "." TEST_SOVERSION), file));
    }
}

TEST_F(Version, IsWhatOtherProjectsFind) {
    const std::string ask = "PKG_CONFIG_PATH=" + Quoted(TEST_LIBDIR "/pkgconfig") + " pkg-config --modversion ";
    EXPECT_EQ(Output(ask + "lineup"), kVersion + "\n");
    EXPECT_EQ(Output(ask + "zelcore"), kVersion + "\n");
    EXPECT_THAT(test::ReadFile(kPrefix / TEST_LIBDIR / "cmake/Lineup/LineupConfigVersion.cmake"),
                HasSubstr("set(PACKAGE_VERSION \"" + kVersion + "\")"));
}

TEST_F(Version, IsWhatTheManualAndTheSoftwareCentreSay) {
    EXPECT_THAT(Output("zcat " + Quoted("share/man/man1/lineup.1.gz")),
                HasSubstr("\"Bars and Tone " + kVersion + "\""));
    EXPECT_THAT(test::ReadFile(kPrefix / "share/metainfo/org.barsandtone.lineup_studio.metainfo.xml"),
                HasSubstr("<release version=\"" + kVersion + "\" date=\"" TEST_DATE "\"/>"));
}

}  // namespace
