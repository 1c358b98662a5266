#include "Tests/Architecture/SourceTree.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace test {

namespace {

std::vector<std::string> ReadLines(const fs::path& file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

std::vector<SourceFile> ReadSources(const std::vector<std::string>& folders, const std::vector<std::string>& endings) {
    const fs::path root = TEST_SOURCE_DIR;
    std::vector<SourceFile> files;
    for (const std::string& folder : folders) {
        if (!fs::exists(root / folder)) {
            continue;
        }
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const std::string path = entry.path().lexically_relative(root).generic_string();
            const auto endsPath = [&path](const std::string& ending) { return path.ends_with(ending); };
            if (entry.is_regular_file() && std::ranges::any_of(endings, endsPath)) {
                files.push_back({path, ReadLines(entry.path())});
            }
        }
    }
    std::ranges::sort(files, {}, &SourceFile::path);
    return files;
}

std::vector<SourceFile> ReadCppSources() {
    return ReadSources({"include", "Src", "Host", "Apps", "Bridges", "Tests", "Benchmarks"}, {".cpp", ".h"});
}

}  // namespace test
