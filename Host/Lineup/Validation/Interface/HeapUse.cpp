#include "Host/Lineup/Validation/Interface/HeapUse.h"

#include <cstddef>
#include <malloc.h>

// A sanitizer has a heap of its own; other builds lack the function.
// NOLINTNEXTLINE(readability-identifier-naming): the sanitizers' name
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace lineup::validation {

std::int64_t HeapBytesInUse() {
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
    }
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<std::int64_t>(heap.uordblks + heap.hblkhd);
}

}  // namespace lineup::validation
