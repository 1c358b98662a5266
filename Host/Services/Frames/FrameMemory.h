#pragma once

#include "Host/Interface/Core/Export.h"

#include <cstddef>
#include <memory>
#include <new>

namespace zelcore {
inline namespace parts {

struct FreeFrameMemory {
    std::align_val_t alignment{};
    void operator()(std::byte* memory) const noexcept { ::operator delete(memory, alignment); }
};

/// Memory for a picture, which begins a cache line.
using FrameMemory = std::unique_ptr<std::byte, FreeFrameMemory>;

/// `bytes` bytes with undefined contents. A large picture lies on the system's large pages where it has them: a row
/// of a high-definition frame spans eight small ones, and the system clears each small page on its own when it is
/// first written. Throws std::bad_alloc.
ZEL_API FrameMemory AllocateFrameMemory(std::size_t bytes);

}  // namespace parts
}  // namespace zelcore
