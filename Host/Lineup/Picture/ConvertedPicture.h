#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Picture/ColourConversion.h"
#include "Host/Services/Frames/FrameMemory.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace lineup {
inline namespace parts {

/// A picture that was converted into planes of its own. Movable.
class LINEUP_API ConvertedPicture {
public:
    static constexpr std::size_t kPlanes = 3;

    /// Chroma that several pixels share takes the last column and line of an odd picture twice. Throws as ConvertColour
    /// does.
    ConvertedPicture(const FloatPicture& picture, const PlaneFormat& format);

    /// One line of a plane, its values in one byte or two as PlaneFormat::bits says.
    [[nodiscard]] const std::uint8_t* Line(std::size_t plane, std::size_t line) const noexcept;

    /// Value `x` of that line.
    [[nodiscard]] std::uint16_t Value(std::size_t plane, std::size_t line, std::size_t x) const noexcept;

private:
    std::size_t mValueBytes;
    std::size_t mStride = 0;
    std::array<zelcore::FrameMemory, kPlanes> mPlanes;
};

}  // namespace parts
}  // namespace lineup
