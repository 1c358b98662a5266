#include "Host/Interface/Core/SmallBlockAllocator.h"

#include <memory_resource>

namespace zelcore::utility::SmallBlockAllocator {

namespace {

// Lives as long as the process: blocks may be returned while static objects are being destroyed.
std::pmr::memory_resource& Pool() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): one for the process
    static auto* const pool = new std::pmr::synchronized_pool_resource();
    return *pool;
}

}  // namespace

void* Allocate(std::size_t bytes) {
    return Pool().allocate(bytes);
}

void Deallocate(void* block, std::size_t bytes) noexcept {
    if (block != nullptr) {
        Pool().deallocate(block, bytes);
    }
}

}  // namespace zelcore::utility::SmallBlockAllocator
