#include "Host/Interface/Core/SmallBlockAllocator.h"
#include "Tests/Support/CountedHeap.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

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
    const long long before = test::CountHeap().taken;
    for (int i = 0; i < 10'000; ++i) {
        allocator::Deallocate(allocator::Allocate(24), 24);
    }
    EXPECT_EQ(test::CountHeap().taken, before);
}

TEST(SmallBlockAllocatorHeap, GetsBackEverythingWhenTheThreadEnds) {
    std::jthread([] { TakeAndReturn(64); }).join();
    const long long before = test::CountHeap().outstanding;
    for (int i = 0; i < 20; ++i) {
        std::jthread([] { TakeAndReturn(64); }).join();
    }
    EXPECT_EQ(test::CountHeap().outstanding, before);
}

TEST(SmallBlockAllocatorHeap, GetsBackAtOnceWhatIsTooMuchToKeep) {
    const long long before = test::CountHeap().outstanding;
    TakeAndReturn(10'000);
    EXPECT_LE(test::CountHeap().outstanding - before, 64);
}

TEST(SmallBlockAllocatorHeap, ServesWhatAThreadReturnsWhileItEnds) {
    // Destroyed after the thread's kept blocks, which are made by its first request.
    struct Late {
        ~Late() { allocator::Deallocate(block, 24); }
        void* block = nullptr;
    };
    const long long before = test::CountHeap().outstanding;
    std::jthread([] {
        thread_local Late late;
        late.block = allocator::Allocate(24);
    }).join();
    EXPECT_EQ(test::CountHeap().outstanding, before);
}

}  // namespace
