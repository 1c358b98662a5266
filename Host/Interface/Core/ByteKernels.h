#pragma once

#include <cstdint>

#include "Export.h"

/// The byte kernels under the float-buffer primitives, which the host owns. C linkage, reached through
/// the dynamic symbol table. A size of zero or less does nothing. Any thread.

extern "C" {

/// Copies `bytes` bytes between blocks that do not overlap, or from a block onto itself. The forms
/// differ in the sizes they are meant for, never in what they write: _E9 below 32 KiB, the others
/// from there on.
ZEL_API void ippCopyBytes(const void* source, void* destination, std::int64_t bytes);
ZEL_API void ippCopyBytes_E9(const void* source, void* destination, std::int64_t bytes);
ZEL_API void ippCopyBytes_repE9(const void* source, void* destination, std::int64_t bytes);

/// Zeroes `bytes` bytes. _E9 is meant for up to 2 MiB, the plain form for more.
ZEL_API void ippZeroBytes(void* destination, std::int64_t bytes);
ZEL_API void ippZeroBytes_E9(void* destination, std::int64_t bytes);
}
