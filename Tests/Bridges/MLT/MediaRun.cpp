#include "Tests/Bridges/MLT/MediaRun.h"

#include "Tests/Support/RunProgram.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace test {

namespace {

std::uint32_t Number(const std::string& bytes, std::size_t at, std::size_t size) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + at, size);
    return number;
}

}  // namespace

Planes ReadFloatWave(const std::filesystem::path& file) {
    const std::string bytes = ReadFile(file);
    std::size_t channels = 0;
    for (std::size_t at = 12; at + 8 <= bytes.size();) {
        const std::string name = bytes.substr(at, 4);
        const std::size_t size = Number(bytes, at + 4, 4);
        const std::size_t body = at + 8;
        if (name == "fmt ") {
            channels = Number(bytes, body + 2, 2);
            if (Number(bytes, body + 14, 2) != 32) {
                throw std::runtime_error(file.string() + " is not of 32 bits");
            }
        } else if (name == "data" && channels > 0) {
            Planes planes(channels);
            const std::size_t count = std::min(size, bytes.size() - body) / sizeof(float);
            for (std::size_t i = 0; i < count; ++i) {
                float sample = 0;
                std::memcpy(&sample, bytes.data() + body + i * sizeof(float), sizeof(float));
                planes[i % channels].push_back(sample);
            }
            return planes;
        }
        at = body + size + size % 2;
    }
    throw std::runtime_error(file.string() + " is no Wave file");
}

}  // namespace test
