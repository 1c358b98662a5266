#pragma once

#include "Tests/Support/RunProgram.h"

#include <filesystem>
#include <string>

namespace test {

/// A root of its own: this machine's, with what is written kept apart in memory and gone at the end, and the project's
/// folder hidden. Programs that run in it find nothing of the build; packages are installed there against this
/// machine's own database of packages. The process that has one sees it alone. Takes the rights of root.
class Root {
public:
    /// Throws std::runtime_error, saying why, when none can be made.
    Root();
    ~Root();
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    /// Where it lies, seen from outside.
    [[nodiscard]] const std::filesystem::path& Path() const { return mPath; }

    /// Runs a command of the shell in it, in its folder /tmp/home, which is empty at first.
    [[nodiscard]] RunResult Run(const std::string& commandLine) const;

private:
    std::filesystem::path mScratch;
    std::filesystem::path mPath;
};

}  // namespace test
