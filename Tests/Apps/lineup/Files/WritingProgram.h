#pragma once

#include "Tests/Support/ChildProgram.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

namespace test {

/// One way to have the program write a file: the options but for the overwriting one.
struct Writer {
    const char* name;    ///< for the test's name
    const char* target;  ///< the file it writes, in the folder it runs in
    std::vector<std::string> arguments;

    /// The command line that replaces the target.
    [[nodiscard]] std::vector<std::string> Command() const {
        std::vector<std::string> command = {TEST_LINEUP};
        command.insert(command.end(), arguments.begin(), arguments.end());
        command.emplace_back("-y");
        return command;
    }
};

inline void PrintTo(const Writer& writer, std::ostream* stream) {
    *stream << writer.name;
}

/// A writer of each kind: streams, sound alone, pictures, text, and the 32 bytes of settings. Each writes the same
/// bytes every time.
inline const std::vector<Writer>& Writers() {
    static const std::vector<Writer> kWriters = {
        {"RenderMov", "out.mov", {"render", "out.mov", "--size", "320x180", "--duration", "4"}},
        {"RenderWav", "out.wav", {"render", "out.wav", "--duration", "20", "--reproducible"}},
        {"RenderMp4", "out.mp4", {"render", "out.mp4", "--size", "320x180", "--duration", "1"}},
        {"Frame", "out.png", {"frame", "out.png"}},
        {"Peaks", "out.svg", {"peaks", "out.svg"}},
        {"Settings", "out.batn", {"settings", "out.batn", "--defaults"}},
    };
    return kWriters;
}

constexpr const char* kPrecious = "precious";
constexpr const char* kPartialName = "\\.out\\.[a-z0-9]+\\.lineup-[a-z0-9]{6}\\.partial";

/// The names of everything in a folder, hidden files too, sorted.
inline std::vector<std::string> NamesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

/// A test of every writer, in a folder that holds its target already.
class WritingProgram : public testing::TestWithParam<Writer> {
protected:
    void SetUp() override { test::WriteFile(Target(), kPrecious); }

    [[nodiscard]] const std::filesystem::path& Folder() const { return mFolder.Path(); }
    [[nodiscard]] std::filesystem::path Target() const { return Folder() / GetParam().target; }

    [[nodiscard]] Ending Run(const ChildProgram::Preparation& preparation = {}) const {
        return RunChild(GetParam().Command(), Folder(), preparation);
    }

    /// The earlier file is there, untouched, and nothing else.
    void ExpectTheEarlierFileAlone() const {
        EXPECT_EQ(ReadFile(Target()), kPrecious);
        EXPECT_THAT(NamesIn(Folder()), testing::ElementsAre(GetParam().target));
    }

    /// Ended with 1 and one line of text that holds `cause`.
    static void ExpectSentence(const Ending& ending, const std::string& cause) {
        EXPECT_EQ(ending.exitCode, 1) << "signal " << ending.signal << "\n" << ending.err;
        EXPECT_THAT(ending.err, testing::StartsWith("lineup: cannot "));
        EXPECT_THAT(ending.err, testing::HasSubstr(cause));
        EXPECT_EQ(std::ranges::count(ending.err, '\n'), 1) << ending.err;
    }

private:
    TemporaryFolder mFolder;
};

/// For INSTANTIATE_TEST_SUITE_P.
inline std::string NameOf(const testing::TestParamInfo<Writer>& info) {
    return info.param.name;
}

}  // namespace test
