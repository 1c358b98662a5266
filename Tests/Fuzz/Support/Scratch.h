#pragma once

#include "Tests/Support/TemporaryFolder.h"

#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <unistd.h>

namespace fuzz {

/// A file that is written anew for each input, in a folder of its own that goes away at the end.
class Scratch {
public:
    /// `relative` is the file's path inside the folder.
    explicit Scratch(const std::filesystem::path& relative) : mFile(mFolder.Path() / relative) {
        test::WriteFile(mFile, "");
    }

    void Write(std::string_view bytes) const {
        // Plain calls: a stream for each of a million inputs takes as long as what is tested.
        const int file = open(mFile.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
        const bool written = file >= 0 && write(file, bytes.data(), bytes.size()) == std::ssize(bytes);
        if (file < 0 || close(file) != 0 || !written) {
            throw std::runtime_error("cannot write " + mFile.string());
        }
    }

    [[nodiscard]] const std::filesystem::path& Folder() const { return mFolder.Path(); }
    [[nodiscard]] const std::filesystem::path& File() const { return mFile; }

private:
    test::TemporaryFolder mFolder;
    std::filesystem::path mFile;
};

}  // namespace fuzz
