#pragma once

#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TestFolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace test {

/// The tree that was installed into a prefix and then moved.
inline const std::filesystem::path kPrefix = TEST_PREFIX;

/// Every regular file below `folder`; links are left out.
inline std::vector<std::filesystem::path> FilesBelow(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && !entry.is_symlink()) {
            files.push_back(entry.path());
        }
    }
    return files;
}

/// A test with a folder of its own, where commands of the shell run.
class InFolder : public TestFolder {
protected:
    [[nodiscard]] RunResult Run(const std::string& commandLine) const {
        return RunProgram("cd '" + Folder().string() + "' && { " + commandLine + "; }", Folder());
    }

    /// What a command prints that ends with 0.
    [[nodiscard]] std::string Output(const std::string& commandLine) const {
        const RunResult result = Run(commandLine);
        EXPECT_EQ(result.exitCode, 0) << commandLine << "\n" << result.out << result.err;
        return result.out;
    }
};

}  // namespace test
