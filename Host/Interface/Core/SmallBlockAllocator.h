#pragma once

#include <cstddef>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "Export.h"

/// The host's allocator for short-lived lists and strings.
namespace zelcore::utility::SmallBlockAllocator {

/// `bytes` bytes aligned for any fundamental type; throws std::bad_alloc when out of memory.
/// Any thread; a block may be returned by another thread than the one that took it.
[[nodiscard]] ZEL_API void* Allocate(std::size_t bytes);

/// Returns a block taken with Allocate(bytes). Null is ignored.
ZEL_API void Deallocate(void* block, std::size_t bytes) noexcept;

/// The same as a standard allocator.
template <class T>
struct Allocator {
    using value_type = T;

    Allocator() noexcept = default;
    template <class U>
    Allocator(const Allocator<U>&) noexcept {}  // NOLINT(google-explicit-constructor): rebinding is implicit

    [[nodiscard]] T* allocate(std::size_t count) {
        static_assert(alignof(T) <= alignof(std::max_align_t));
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) {
            throw std::bad_array_new_length();
        }
        void* const block = Allocate(count * sizeof(T));
        if (block == nullptr) {
            throw std::bad_alloc();  // a host that refuses in the way of C
        }
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t count) noexcept { Deallocate(block, count * sizeof(T)); }

    template <class U>
    bool operator==(const Allocator<U>&) const noexcept {
        return true;
    }
};

template <class T>
using vector = std::vector<T, Allocator<T>>;

template <class Char>
using basic_string = std::basic_string<Char, std::char_traits<Char>, Allocator<Char>>;

}  // namespace zelcore::utility::SmallBlockAllocator
