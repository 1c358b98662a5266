// The packages of this version and of the next minor one, over each other, in a root of their own.
#include "Tests/Packaging/Root.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kThis = "liblineup" TEST_SOVERSION;
const std::string kNext = "liblineup" TEST_NEXT_SOVERSION;
const std::string kPrograms = "lineup lineup-plugin liblineup-dev";

// The tests run one after the other in one root; the last one empties it.
class Upgrade : public testing::Test {
protected:
    static void SetUpTestSuite() {
        try {
            sRoot = std::make_unique<test::Root>();
        } catch (const std::exception& error) {
            sWhyNot = error.what();
            return;
        }
        (void)sRoot->Run("dpkg --purge lineup-studio mlt-lineup gstreamer1.0-lineup " + kPrograms + " " + kThis + " " +
                         kNext);
        sBefore = Named();
        const fs::path packages = sRoot->Path() / "tmp/packages";
        fs::create_directories(packages / "this");
        for (const auto& entry : fs::directory_iterator(TEST_PACKAGES)) {
            const std::string name = entry.path().filename().string();
            const bool isBridge = name.starts_with("mlt") || name.starts_with("gstreamer");
            if (name.ends_with(".deb") && !name.starts_with("lineup-studio") && !isBridge) {
                fs::copy(entry.path(), packages / "this");
            }
        }
        fs::copy(TEST_NEXT_PACKAGES, packages / "next");
    }
    void SetUp() override {
        if (!sRoot) {
            std::printf("SKIPPED: there can be no root of its own: %s\n", sWhyNot.c_str());
            GTEST_SKIP();
        }
    }

    // What a command prints that ends with 0.
    static std::string Output(const std::string& commandLine) {
        const test::RunResult result = sRoot->Run(commandLine);
        EXPECT_EQ(result.exitCode, 0) << commandLine << "\n" << result.out << result.err;
        return result.out;
    }
    static std::string Named() {
        return Output(
            "find /usr /etc /var /opt -ignore_readdir_race -iname '*lineup*' -o -iname '*barsandtone*' "
            "-o -iname '*zelcore*'");
    }
    // Everything is configured, the program says what version it is of, and makes the very samples that it made before.
    static void ExpectAWorkingProgram(const std::string& version) {
        EXPECT_THAT(Output("dpkg --audit " + kPrograms), IsEmpty());
        EXPECT_THAT(Output("lineup --version"), HasSubstr(version));
        (void)Output("rm -f tone.wav && lineup render tone.wav --duration 1");
        const std::string samples = Output("ffmpeg -v error -i tone.wav -f md5 -");
        EXPECT_THAT(samples, StartsWith("MD5="));
        EXPECT_EQ(samples, sSamples.empty() ? samples : sSamples);
        sSamples = samples;
    }

    static inline std::unique_ptr<test::Root> sRoot;
    static inline std::string sWhyNot;
    static inline std::string sBefore;   // what Named said before the packages came
    static inline std::string sSamples;  // what the first program wrote
};

TEST_F(Upgrade, BeginsWithThisVersion) {
    (void)Output("dpkg -i /tmp/packages/this/*.deb");
    ExpectAWorkingProgram(TEST_BUILD_VERSION);
    (void)Output(
        "g++ -std=c++20 /usr/share/doc/liblineup-dev/examples/embed/embed.cpp -o embed "
        "$(pkg-config --cflags --libs lineup) && ./embed");
}

TEST_F(Upgrade, PutsTheNextVersionInItsPlace) {
    (void)Output("dpkg -i /tmp/packages/next/*.deb");
    ExpectAWorkingProgram(TEST_NEXT_SOVERSION ".0");
    EXPECT_EQ(Output("dpkg-query -W -f '${db:Status-Status} ' " + kThis + " " + kNext), "installed installed ");
}

TEST_F(Upgrade, LeavesProgramsOfOthersTheLibraryThatTheyAreLinkedTo) {
    EXPECT_THAT(Output("ldd embed"), HasSubstr("liblineup.so." TEST_SOVERSION " => /"));
    EXPECT_THAT(Output("./embed"), HasSubstr("luma of yellow 161"));
}

TEST_F(Upgrade, NeedsNothingOfTheOldVersionAfterwards) {
    (void)Output("dpkg --purge " + kThis);
    EXPECT_THAT(Output("ls /usr/" TEST_LIBDIR),
                AllOf(Not(HasSubstr("lineup-" TEST_SOVERSION)), Not(HasSubstr("liblineup.so." TEST_SOVERSION))));
    ExpectAWorkingProgram(TEST_NEXT_SOVERSION ".0");
}

TEST_F(Upgrade, CanBeTakenBack) {
    (void)Output("dpkg -i /tmp/packages/this/*.deb && dpkg --purge " + kNext);
    ExpectAWorkingProgram(TEST_BUILD_VERSION);
}

TEST_F(Upgrade, LeavesNothingOfEitherVersionBehind) {
    ASSERT_NE(Named(), sBefore);
    (void)Output("dpkg -r " + kPrograms + " " + kThis);
    (void)Output("dpkg --purge " + kPrograms + " " + kThis);
    EXPECT_EQ(Named(), sBefore);
}

}  // namespace
