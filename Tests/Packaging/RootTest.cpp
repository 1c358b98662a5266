// The packages, installed into a root of their own: what a person has who installs them on this system.
#include "Tests/Packaging/Root.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kAll =
    "liblineup" TEST_SOVERSION " liblineup-dev lineup lineup-plugin lineup-studio mlt-lineup gstreamer1.0-lineup";

// The tests run one after the other in one root; the last one empties it.
class InstalledPackages : public testing::Test {
protected:
    static void SetUpTestSuite() {
        try {
            sRoot = std::make_unique<test::Root>();
        } catch (const std::exception& error) {
            sWhyNot = error.what();
            return;
        }
        (void)sRoot->Run("dpkg --purge " + kAll);  // where they are installed on this machine
        sBefore = Named();
        fs::copy(TEST_PACKAGES, sRoot->Path() / "tmp/packages");
        fs::copy(TEST_SOURCE_DIR "/Packaging/debian/tests", sRoot->Path() / "tmp/tests");
    }
    void SetUp() override {
        if (!sRoot) {
            std::printf("SKIPPED: there can be no root of its own: %s\n", sWhyNot.c_str());
            GTEST_SKIP();
        }
    }

    static test::RunResult Run(const std::string& commandLine) { return sRoot->Run(commandLine); }

    // What a command prints that ends with 0.
    static std::string Output(const std::string& commandLine) {
        const test::RunResult result = Run(commandLine);
        EXPECT_EQ(result.exitCode, 0) << commandLine << "\n" << result.out << result.err;
        return result.out;
    }
    // Every file and folder of the system that could be the packages', by its name.
    static std::string Named() {
        return Output(
            "find /usr /etc /var /opt -ignore_readdir_race -iname '*lineup*' -o -iname '*barsandtone*' "
            "-o -iname '*zelcore*'");
    }
    static void WriteDocument() {
        test::WriteFile(sRoot->Path() / "tmp/home/news.lineup", R"({
  "kind": "lineup",
  "version": 1,
  "settings": "0100000000803b4702000000020000000000000000007a440000803e00000000",
  "picture": {"width": 1920, "height": 1080, "card": "auto", "frameRate": [25, 1]},
  "lengthFrames": 125
}
)");
    }
    static bool Exists(const std::string& path) { return fs::exists(sRoot->Path() / path); }

    static inline std::unique_ptr<test::Root> sRoot;
    static inline std::string sWhyNot;
    static inline std::string sBefore;  // what Named said before the packages came
};

TEST_F(InstalledPackages, AreNotConfiguredWithoutWhatTheyDependOn) {
    const auto result = Run("dpkg --no-triggers -i /tmp/packages/lineup_*.deb");
    EXPECT_NE(result.exitCode, 0);
    EXPECT_THAT(result.err, HasSubstr("lineup depends on lineup-plugin"));
    (void)Output("dpkg --no-triggers --purge lineup");
}

TEST_F(InstalledPackages, FindEverythingTheyDependOnAmongTheSystemsOwn) {
    (void)Output("dpkg -i /tmp/packages/*.deb");
    EXPECT_THAT(Output("dpkg --audit " + kAll), IsEmpty());
    EXPECT_EQ(Output("dpkg-query -W -f '${db:Status-Status} ' " + kAll),
              "installed installed installed installed installed installed installed ");
}

// Packaging/debian/tests, each with what its package depends on, on the system as it stands.
TEST_F(InstalledPackages, PassTheTestsThatADistributionRunsOnThem) {
    const std::string tests = Output("sh /tmp/tests/run.sh /tmp/packages 2>&1");
    for (const std::string test : {"program", "plug-in", "studio", "development", "mlt", "gstreamer"}) {
        EXPECT_THAT(tests, testing::ContainsRegex(test + " +PASS\n"));
    }
}

TEST_F(InstalledPackages, AreKnownToShellsReadersAndDesktops) {
    EXPECT_THAT(Output("man -w lineup-render lineup-studio"), HasSubstr("/usr/share/man/man1/lineup-render.1.gz"));
    EXPECT_EQ(Output("zsh -fc 'autoload -Uz compinit; compinit -u -D; echo $_comps[lineup]'"), "_lineup\n");
    EXPECT_TRUE(Exists("usr/share/bash-completion/completions/lineup"));
    WriteDocument();
    EXPECT_THAT(Output("gio info -a standard::content-type news.lineup"),
                HasSubstr("application/vnd.barsandtone.lineup+json\n"));
    EXPECT_EQ(Output("xdg-mime query default application/vnd.barsandtone.lineup+json"),
              "org.barsandtone.lineup_studio.desktop\n");
}

TEST_F(InstalledPackages, LeaveNothingBehind) {
    ASSERT_NE(Named(), sBefore);
    (void)Output("dpkg -r " + kAll);
    (void)Output("dpkg --purge " + kAll);
    EXPECT_THAT(Run("dpkg-query -W " + kAll).out, IsEmpty());
    EXPECT_EQ(Named(), sBefore);
    EXPECT_THAT(Output("ldconfig -p | grep -e lineup -e zelcore || true"), IsEmpty());
}

}  // namespace
