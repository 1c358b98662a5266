#pragma once

#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace test {

/// Recordings that ffmpeg makes in the test's folder.
class MadeRecordings : public TestFolder {
protected:
    /// Runs ffmpeg with `arguments` and a file in the folder, and returns the file's path.
    std::string Make(const std::string& arguments, const std::string& file) {
        const std::string path = (Folder() / file).string();
        const auto result = RunProgram("ffmpeg -v error -nostdin -y " + arguments + " '" + path + "'", Folder());
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return path;
    }
};

}  // namespace test
