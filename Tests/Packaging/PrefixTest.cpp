// The installed tree, after it was moved.
#include "Tests/Architecture/ModuleSymbols.h"
#include "Tests/Packaging/Installed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ranges>

namespace {

namespace fs = std::filesystem;
using test::kPrefix;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class InstalledPrefix : public test::InFolder {
protected:
    // What a program of the prefix prints.
    [[nodiscard]] std::string Say(const std::string& commandLine) const {
        return Output("'" + (kPrefix / "bin").string() + "'/" + commandLine);
    }
};

TEST_F(InstalledPrefix, HasAPlugInThatTheProgramFinds) {
    const auto report = nlohmann::json::parse(Say("lineup info --json"));
    EXPECT_EQ(report["plugin"]["bundle"], (kPrefix / "lib/lineup/BarsAndTone.bundle").string());
    EXPECT_THAT(Say("lineup validate '" + (kPrefix / "lib/lineup/BarsAndTone.bundle").string() + "'"),
                EndsWith(" passed\n"));
}

TEST_F(InstalledPrefix, HasTheLibrariesThatAreLoadedWhenTheyAreNeeded) {
    EXPECT_THAT(Say("lineup render bars.mov --size 256x120 --duration 0.2"), HasSubstr("prores-hq"));
    EXPECT_THAT(Say("lineup peaks tone.png"), HasSubstr("PNG"));
    const auto dialog = Run("env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM '" +
                            (kPrefix / "bin/lineup").string() + "' settings tone.batn");
    EXPECT_THAT(dialog.err, HasSubstr("cannot show a dialog: no display"));
}

TEST_F(InstalledPrefix, HasAProducerThatTheFrameworkFinds) {
    EXPECT_THAT(Say("lineup-mlt melt -query producer=barsandtone"), HasSubstr("title: Bars and Tone"));
}

TEST_F(InstalledPrefix, HasElementsThatTheFrameworkFinds) {
    const std::string environment = "env GST_REGISTRY_1_0=registry.bin GST_PLUGIN_PATH_1_0='" +
                                    (kPrefix / TEST_LIBDIR / "gstreamer-1.0").string() + "' ";
    EXPECT_THAT(Output(environment + "gst-inspect-1.0 lineup"), HasSubstr("lineupsrc: Line-up clip"));
    // With the plug-in of the same prefix.
    EXPECT_THAT(Output(environment + "gst-launch-1.0 lineupvideosrc num-buffers=2 ! fakesink"), HasSubstr("Got EOS"));
}

TEST_F(InstalledPrefix, LeadsFromFileToFileByPathsRelativeToThem) {
    int libraries = 0;
    for (const fs::path& file : test::FilesBelow(kPrefix)) {
        if (!test::ReadFile(file).starts_with("\177ELF")) {
            continue;
        }
        ++libraries;
        for (const std::string& paths : test::DynamicEntries(file, "RUNPATH")) {
            for (const auto part : std::views::split(paths, ':')) {
                EXPECT_THAT(std::string(part.begin(), part.end()), StartsWith("$ORIGIN")) << file;
            }
        }
        EXPECT_THAT(test::DynamicEntries(file, "RPATH"), testing::IsEmpty()) << file;
    }
    EXPECT_GE(libraries, 10);
}

TEST_F(InstalledPrefix, MentionsNoFolderOfTheBuild) {
    for (const fs::path& file : test::FilesBelow(kPrefix)) {
        EXPECT_EQ(test::ReadFile(file).find(TEST_BUILD), std::string::npos) << file;
    }
}

}  // namespace
