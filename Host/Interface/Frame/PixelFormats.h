#pragma once

#include <cstdint>

/// The pixel formats of frames that cross the importer boundary, and the codes under which the
/// fill service knows the same layouts.

/// What a frame request asks for: 32-bit four-character codes, named by their bytes in memory.
inline constexpr std::uint32_t kPixelFormat_VUYA_32f = 0x37785556;  ///< "VUx7": float V,U,Y,A, 16 bytes a pixel
inline constexpr std::uint32_t kPixelFormat_VUYA_8u = 0x78797576;   ///< "vuyx": 8-bit V,U,Y,A, 4 bytes a pixel

/// What IR_FillWithColor takes as the format of a destination or a colour.
inline constexpr std::uint32_t kFillFormat_VUYA_8u = 2061;
inline constexpr std::uint32_t kFillFormat_VUYA_32f = 2829;

inline constexpr int kBytesPerPixel_VUYA_32f = 16;
inline constexpr int kBytesPerPixel_VUYA_8u = 4;
