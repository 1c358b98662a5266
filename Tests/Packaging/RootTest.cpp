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

TEST_F(InstalledPackages, MakeClips) {
    EXPECT_THAT(Output("lineup info"), HasSubstr("Bundle        /usr/lib/lineup/BarsAndTone.bundle\n"));
    EXPECT_THAT(Output("lineup render bars.mov --duration 1"), AllOf(HasSubstr("prores-hq"), HasSubstr("25 frames")));
    EXPECT_THAT(Output("ffprobe -v error -show_entries stream=codec_name -of csv=p=0 bars.mov"), "prores\npcm_s24le\n");
    EXPECT_THAT(Output("lineup peaks tone.png"), HasSubstr("PNG"));
}

TEST_F(InstalledPackages, PassTheirOwnValidation) {
    EXPECT_THAT(Output("lineup validate /usr/lib/lineup/BarsAndTone.bundle"), EndsWith(" passed\n"));
}

TEST_F(InstalledPackages, OpenADocumentInTheStudio) {
    WriteDocument();
    // It runs until it is told to end, and remembers by then which document it has shown.
    const auto result =
        Run("QT_QPA_PLATFORM=offscreen lineup-studio news.lineup >studio.log 2>&1 & studio=$!\n"
            "for i in $(seq 100); do grep -qs news.lineup -r .config && break; sleep 0.1; done\n"
            "grep -o '/usr/lib/lineup/BarsAndTone[^ ]*so' /proc/$studio/maps | sort -u\n"
            "kill $studio; wait $studio; grep -rl news.lineup .config; cat studio.log >&2");
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("/usr/lib/lineup/BarsAndTone.bundle/Contents/"), HasSubstr("lineup-studio")))
        << result.err;
}

TEST_F(InstalledPackages, LetOthersBuildWithTheLibrary) {
    const std::string examples = "/usr/share/doc/liblineup-dev/examples";
    const std::string said =
        "2 channels at 48000 Hz, peak 0.25\n1920x1080, luma of yellow 161\ntone.wav: 48000 samples\n";
    (void)Output("g++ -std=c++20 " + examples + "/embed/embed.cpp -o embed $(pkg-config --cflags --libs lineup)");
    EXPECT_EQ(Output("./embed"), said);
    (void)Output("cmake -G Ninja -S " + examples + "/embed -B build && cmake --build build");
    EXPECT_EQ(Output("build/embed"), said);
}

TEST_F(InstalledPackages, AddTheProducerToTheFramework) {
    EXPECT_THAT(Output("timeout 60 melt -query producer=barsandtone"),
                AllOf(HasSubstr("title: Bars and Tone"), HasSubstr("identifier: frequency")));
    EXPECT_TRUE(Exists("usr/share/kdenlive/generators/barsandtone.xml"));
}

TEST_F(InstalledPackages, AddTheElementsToTheFramework) {
    EXPECT_THAT(Output("timeout 60 gst-inspect-1.0 lineup"), HasSubstr("lineupsrc: Line-up clip"));
    (void)Output(
        "timeout 60 gst-launch-1.0 playbin uri='lineup://?ident=blits&size=320x180&duration=0.2' "
        "video-sink=fakesink audio-sink=fakesink");
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
