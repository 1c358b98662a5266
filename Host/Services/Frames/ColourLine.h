#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zelcore {

/// A colour as a cache line of pixels side by side.
class ColourLine {
public:
    static constexpr std::ptrdiff_t kBytes = 64;

    /// Pixel is 4 or 16 bytes, copied as they are.
    template <class Pixel>
    explicit ColourLine(const Pixel& pixel) : mPixelBytes(sizeof(Pixel)) {
        static_assert(sizeof(Pixel) == 4 || sizeof(Pixel) == 16);
        for (std::size_t at = 0; at < mBytes.size(); at += sizeof(Pixel)) {
            std::memcpy(mBytes.data() + at, &pixel, sizeof(Pixel));
        }
    }

    [[nodiscard]] const std::uint8_t* Bytes() const noexcept { return mBytes.data(); }
    [[nodiscard]] std::ptrdiff_t PixelBytes() const noexcept { return mPixelBytes; }

private:
    alignas(kBytes) std::array<std::uint8_t, std::size_t{kBytes}> mBytes{};
    std::ptrdiff_t mPixelBytes;
};

}  // namespace zelcore
