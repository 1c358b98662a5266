#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>

namespace test {

/// An empty folder of its own that goes away with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder() {
        static std::atomic<int> count{0};
        mPath = std::filesystem::temp_directory_path() /
                ("lineup-test-" + std::to_string(getpid()) + "-" + std::to_string(++count));
        std::filesystem::create_directories(mPath);
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(mPath, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return mPath; }

private:
    std::filesystem::path mPath;
};

/// Writes `bytes` to `file`, making its folders.
inline void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

}  // namespace test
