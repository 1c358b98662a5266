#pragma once

#include <cstddef>
#include <cstdint>

/// Where registers begin in a buffer, and which products are streamed past the caches. Everything is static, for the
/// reason that VectorRegister.h gives.

namespace vectorkernels {

/// Products of more floats than this are streamed. A processor with registers of 256 bits has caches that hold a few
/// megabytes, and whoever reads the product next finds it there; from 16 MiB on streaming is faster.
[[maybe_unused]] static constexpr std::int64_t StreamedAbove(std::size_t registerBytes) {
    return registerBytes > 16 ? 4'194'304 : 131'072;
}

[[maybe_unused]] static bool IsOnBoundary(const float* address, std::size_t registerBytes) {
    return reinterpret_cast<std::uintptr_t>(address) % registerBytes == 0;
}

/// The floats before the first one on a register's boundary.
[[maybe_unused]] static std::int64_t FloatsToBoundary(const float* address, std::size_t registerBytes) {
    const std::uintptr_t beyond = reinterpret_cast<std::uintptr_t>(address) % registerBytes;
    return static_cast<std::int64_t>((registerBytes - beyond) % registerBytes / sizeof(float));
}

/// Whether `floats` of them are streamed: more than `above`, between buffers on boundaries of a register. Not in place:
/// there the lines are in the caches already, and streaming takes twice as long.
[[maybe_unused]] static bool IsStreamed(const float* source, const float* destination, std::int64_t floats,
                                        std::int64_t above, std::size_t registerBytes) {
    return floats > above && IsOnBoundary(source, registerBytes) && IsOnBoundary(destination, registerBytes) &&
           source != destination;
}

}  // namespace vectorkernels
