#include "Tests/Support/CountedHeap.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long long> gTaken = 0;
std::atomic<long long> gOutstanding = 0;

void* Count(void* block) {
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++gTaken;
    ++gOutstanding;
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
    return Count(std::malloc(bytes));
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
