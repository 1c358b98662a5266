#pragma once

#if defined(__APPLE__)

#include <CoreFoundation/CFUUID.h>

#else

#include <cstdint>

/// The sixteen bytes of a UUID, in the order they are written down.
struct CFUUIDBytes {
    std::uint8_t byte0, byte1, byte2, byte3, byte4, byte5, byte6, byte7;
    std::uint8_t byte8, byte9, byte10, byte11, byte12, byte13, byte14, byte15;
};
static_assert(sizeof(CFUUIDBytes) == 16);

#endif
