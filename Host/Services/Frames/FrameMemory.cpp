#include "Host/Services/Frames/FrameMemory.h"

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

namespace zelcore {
inline namespace parts {

namespace {

constexpr std::size_t kCacheLineBytes = 64;
constexpr std::size_t kLargePage = 2'097'152;

}  // namespace

FrameMemory AllocateFrameMemory(std::size_t bytes) {
    const bool large = bytes >= kLargePage;
    const std::align_val_t alignment{large ? kLargePage : kCacheLineBytes};
    FrameMemory memory(static_cast<std::byte*>(::operator new(bytes, alignment)), FreeFrameMemory{alignment});
#if defined(MADV_HUGEPAGE)
    if (large) {
        // A hint: a system without large pages goes on with small ones.
        static_cast<void>(madvise(memory.get(), bytes / kLargePage * kLargePage, MADV_HUGEPAGE));
    }
#endif
    return memory;
}

}  // namespace parts
}  // namespace zelcore
