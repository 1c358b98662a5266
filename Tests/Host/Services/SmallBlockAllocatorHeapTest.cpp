#include "Host/Interface/Core/SmallBlockAllocator.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>
#include <vector>

// This program's own operator new counts what is taken from the heap.
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

namespace {

namespace allocator = zelcore::utility::SmallBlockAllocator;

void TakeAndReturn(int blocks) {
    std::vector<void*> taken;
    taken.reserve(static_cast<std::size_t>(blocks));
    for (int i = 0; i < blocks; ++i) {
        taken.push_back(allocator::Allocate(24));
    }
    for (void* const block : taken) {
        allocator::Deallocate(block, 24);
    }
}

TEST(SmallBlockAllocatorHeap, IsNotTouchedOnceAThreadHasHadABlockOfTheSize) {
    allocator::Deallocate(allocator::Allocate(24), 24);
    const long long before = gTaken;
    for (int i = 0; i < 10'000; ++i) {
        allocator::Deallocate(allocator::Allocate(24), 24);
    }
    EXPECT_EQ(gTaken, before);
}

TEST(SmallBlockAllocatorHeap, GetsBackEverythingWhenTheThreadEnds) {
    std::jthread([] { TakeAndReturn(64); }).join();
    const long long before = gOutstanding;
    for (int i = 0; i < 20; ++i) {
        std::jthread([] { TakeAndReturn(64); }).join();
    }
    EXPECT_EQ(gOutstanding, before);
}

TEST(SmallBlockAllocatorHeap, GetsBackAtOnceWhatIsTooMuchToKeep) {
    const long long before = gOutstanding;
    TakeAndReturn(10'000);
    EXPECT_LE(gOutstanding - before, 64);
}

TEST(SmallBlockAllocatorHeap, ServesWhatAThreadReturnsWhileItEnds) {
    // Destroyed after the thread's kept blocks, which are made by its first request.
    struct Late {
        ~Late() { allocator::Deallocate(block, 24); }
        void* block = nullptr;
    };
    const long long before = gOutstanding;
    std::jthread([] {
        thread_local Late late;
        late.block = allocator::Allocate(24);
    }).join();
    EXPECT_EQ(gOutstanding, before);
}

}  // namespace
