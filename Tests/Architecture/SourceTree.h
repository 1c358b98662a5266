#pragma once

#include <string>
#include <vector>

namespace test {

/// A text file of the project.
struct SourceFile {
    std::string path;  ///< from the root, with forward slashes
    std::vector<std::string> lines;
};

/// The files under `folders` of the project whose names end with one of `endings`, sorted by path.
/// A folder that does not exist holds no files.
std::vector<SourceFile> ReadSources(const std::vector<std::string>& folders, const std::vector<std::string>& endings);

/// The project's own C++ files.
std::vector<SourceFile> ReadCppSources();

}  // namespace test
