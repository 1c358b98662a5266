#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::Not;
using testing::StartsWith;

// Which shared objects a run of the program loads, by the dynamic loader's own account.
class Start : public test::TestFolder {
protected:
    [[nodiscard]] std::set<std::string> Loaded(const std::string& arguments) const {
        const fs::path log = Folder() / "loader";
        const auto result = test::RunProgram("cd '" + Folder().string() + "' && LD_DEBUG=files LD_DEBUG_OUTPUT='" +
                                                 log.string() + "' '" TEST_LINEUP "' " + arguments,
                                             Folder());
        EXPECT_EQ(result.exitCode, 0) << result.err;
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(Folder())) {
            if (entry.path().filename().string().starts_with("loader.")) {  // it adds the process's number
                Collect(entry.path(), names);
                fs::remove(entry.path());
            }
        }
        return names;
    }

private:
    static void Collect(const fs::path& log, std::set<std::string>& names) {
        constexpr std::string_view kMark = "calling init: ";
        std::ifstream stream(log);
        for (std::string line; std::getline(stream, line);) {
            if (const auto at = line.find(kMark); at != std::string::npos) {
                names.insert(fs::path(line.substr(at + kMark.size())).filename().string());
            }
        }
    }
};

// Our own, the plug-in's, and what any C++ program has.
const auto kSmall =
    AnyOf(StartsWith("liblineup.so."), StartsWith("libzelcore.so."), "BarsAndTone.so", StartsWith("libfmt.so"),
          StartsWith("libplist-2.0.so"), StartsWith("libstdc++.so"), StartsWith("libgcc_s.so"), StartsWith("libm.so"),
          StartsWith("libc.so"), StartsWith("ld-linux"));

TEST_F(Start, OfInfoLoadsNothingButThePlugInAndTheLanguagesOwnLibraries) {
    EXPECT_THAT(Loaded("info"), AllOf(Contains("BarsAndTone.so"), Each(kSmall)));
}

TEST_F(Start, OfAWaveFileLoadsNoMoreThanThat) {
    EXPECT_THAT(Loaded("render tone.wav --quiet"), AllOf(Contains("BarsAndTone.so"), Each(kSmall)));
}

TEST_F(Start, OfNumbersAndDefaultSettingsLoadsNoMoreThanThat) {
    EXPECT_THAT(Loaded("peaks tone.json --quiet"), Each(kSmall));
    EXPECT_THAT(Loaded("settings tone.batn --defaults --quiet"), Each(kSmall));
}

TEST_F(Start, OfAMovieLoadsTheMediaLibrariesAndNoDrawingOnes) {
    EXPECT_THAT(Loaded("render bars.mov --size 256x120 --duration 0.2 --quiet"),
                AllOf(Contains("liblineup-media.so"), Contains(StartsWith("libavcodec.so")),
                      Not(AnyOf(Contains("liblineup-overview.so"), Contains("liblineup-check.so")))));
}

TEST_F(Start, OfAnOverviewLoadsTheDrawingLibraryAndNoMediaOnes) {
    EXPECT_THAT(Loaded("peaks tone.svg --quiet"),
                AllOf(Contains("liblineup-overview.so"), Contains(StartsWith("libcairo.so")),
                      Not(Contains("liblineup-media.so"))));
}

}  // namespace
