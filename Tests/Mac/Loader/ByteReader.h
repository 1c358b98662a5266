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
    std::uint64_t Unsigned() { return Groups().bits; }

    /// The same with a sign: the last group's highest bit stands for all above it.
    std::int64_t Signed() {
        const Number number = Groups();
        const bool isNegative = number.width < 64 && (number.bits >> (number.width - 1) & 1U) != 0;
        return static_cast<std::int64_t>(isNegative ? number.bits | ~std::uint64_t{0} << number.width : number.bits);
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
    struct Number {
        std::uint64_t bits = 0;
        unsigned width = 0;  // of all groups
    };

    Number Groups() {
        Number number;
        std::uint8_t byte = 0;
        do {
            byte = Byte();
            number.bits |= number.width < 64 ? std::uint64_t{byte & 0x7FU} << number.width : 0;
            number.width += 7;
        } while ((byte & 0x80U) != 0);
        return number;
    }

    std::span<const std::uint8_t> mBytes;
};

}  // namespace test
