#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace test {

/// Takes numbers and names off the front of some bytes. Throws std::runtime_error when there are none left.
class ByteReader {
public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : mBytes(bytes) {}

    [[nodiscard]] bool AtEnd() const { return mBytes.empty(); }

    std::uint8_t Byte() {
        if (mBytes.empty()) {
            throw std::runtime_error("opcodes break off");
        }
        const std::uint8_t byte = mBytes.front();
        mBytes = mBytes.subspan(1);
        return byte;
    }

    /// A number in groups of seven bits, the last ones first.
    std::uint64_t Unsigned() {
        std::uint64_t value = 0;
        unsigned shift = 0;
        std::uint8_t byte = 0;
        do {
            byte = Byte();
            value |= shift < 64 ? std::uint64_t{byte & 0x7FU} << shift : 0;
            shift += 7;
        } while ((byte & 0x80U) != 0);
        return value;
    }

    /// The same with a sign: the last group's highest bit stands for all above it.
    std::int64_t Signed() {
        std::uint64_t value = 0;
        unsigned shift = 0;
        std::uint8_t byte = 0;
        do {
            byte = Byte();
            value |= shift < 64 ? std::uint64_t{byte & 0x7FU} << shift : 0;
            shift += 7;
        } while ((byte & 0x80U) != 0);
        if (shift < 64 && (byte & 0x40U) != 0) {
            value |= ~std::uint64_t{0} << shift;
        }
        return static_cast<std::int64_t>(value);
    }

    /// A name that ends with a zero byte.
    std::string Name() {
        std::string name;
        for (std::uint8_t byte = Byte(); byte != 0; byte = Byte()) {
            name += static_cast<char>(byte);
        }
        return name;
    }

private:
    std::span<const std::uint8_t> mBytes;
};

}  // namespace test
