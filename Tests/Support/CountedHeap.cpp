#include "Tests/Support/CountedHeap.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long long> gTaken = 0;
std::atomic<long long> gOutstanding = 0;

void* Take(std::size_t bytes) noexcept {
    void* const block = std::malloc(bytes);
    if (block != nullptr) {
        ++gTaken;
        ++gOutstanding;
    }
    return block;
}

void Free(void* block) {
    if (block != nullptr) {
        --gOutstanding;
        std::free(block);
    }
}

}  // namespace

void* operator new(std::size_t bytes) {
    void* const block = Take(bytes);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}
// Sorting takes its memory so. The address sanitizer has a form of its own, whose memory Free must not get.
void* operator new(std::size_t bytes, const std::nothrow_t& /*none*/) noexcept {
    return Take(bytes);
}
void operator delete(void* block) noexcept {
    Free(block);
}
void operator delete(void* block, std::size_t /*bytes*/) noexcept {
    Free(block);
}

test::HeapCount test::CountHeap() {
    return {gTaken, gOutstanding};
}
