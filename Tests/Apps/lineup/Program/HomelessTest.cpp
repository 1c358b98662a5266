// A home folder is asked for nothing that must be there: services have none, or one that nobody can write to.
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

class Homeless : public test::TestFolder {
protected:
    // What the program says where the environment is changed so.
    [[nodiscard]] std::string Work(const std::string& environment) const {
        std::filesystem::remove(Folder() / "tone.wav");
        const auto result =
            test::RunProgram("cd '" + Folder().string() +
                                 "' && { env -u XDG_CONFIG_HOME -u XDG_DATA_HOME -u XDG_CACHE_HOME " + environment +
                                 " sh -c '" TEST_LINEUP " info && " TEST_LINEUP
                                 " render tone.wav --duration 4 && " TEST_LINEUP " check tone.wav'; } 2>&1",
                             Folder());
        EXPECT_EQ(result.exitCode, 0) << environment << "\n" << result.out;
        return result.out;  // the file bears the time
    }
};

TEST_F(Homeless, ProgramsWorkAsTheyDoAtHome) {
    const std::string home = Work("HOME='" + Folder().string() + "'");
    for (const char* const environment : {"-u HOME", "HOME=", "HOME=/proc", "HOME=/nonexistent", "HOME=relative"}) {
        EXPECT_TRUE(home == Work(environment)) << environment;
    }
}

}  // namespace
