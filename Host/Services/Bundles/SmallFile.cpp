#include "Host/Services/Bundles/SmallFile.h"

#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace zelcore {

std::optional<std::vector<char>> ReadSmallFile(const fs::path& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    // One byte more than is allowed tells a file that is too large, even one that is still growing.
    std::vector<char> bytes(kLargestSmallFileBytes + 1);
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const auto size = static_cast<std::size_t>(stream.gcount());
    if (!stream.eof() || size > kLargestSmallFileBytes) {
        return std::nullopt;
    }
    bytes.resize(size);
    return bytes;
}

}  // namespace zelcore
