#pragma once

#include <cstring>

#if !defined(__APPLE__)

#include <cstddef>

/// Fills `bytes` bytes at `destination` with copies of the sixteen bytes at `pattern`; a last copy
/// that does not fit is cut short. The two must not overlap.
inline void memset_pattern16(void* destination, const void* pattern, std::size_t bytes) noexcept {
    constexpr std::size_t kPatternBytes = 16;
    auto* out = static_cast<unsigned char*>(destination);
    for (; bytes >= kPatternBytes; bytes -= kPatternBytes, out += kPatternBytes) {
        std::memcpy(out, pattern, kPatternBytes);
    }
    if (bytes > 0) {
        std::memcpy(out, pattern, bytes);
    }
}

#endif
