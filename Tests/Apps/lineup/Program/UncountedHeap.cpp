// Loaded in front of the C library: its heap as if nothing were ever taken from it.
#include "Host/Interface/Core/Export.h"

#include <malloc.h>

// NOLINTNEXTLINE(readability-identifier-naming): the C library's name
extern "C" ZEL_API struct mallinfo2 mallinfo2() noexcept {
    return {};
}
