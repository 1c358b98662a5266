#include "Host/Interface/Core/SmallBlockAllocator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <thread>
#include <utility>
#include <vector>

namespace {

namespace allocator = zelcore::utility::SmallBlockAllocator;

constexpr std::size_t kSizes[] = {0, 1, 2, 7, 8, 15, 16, 17, 100, 255, 256, 4096, 4097, 100'000, 5'000'000};

struct Block {
    unsigned char* memory;
    std::size_t bytes;
    unsigned char mark;
};

// A block filled from end to end with a mark of its own.
Block Take(std::size_t bytes, std::size_t serial) {
    Block block = {static_cast<unsigned char*>(allocator::Allocate(bytes)), bytes,
                   static_cast<unsigned char>(serial * 37 + 1)};
    std::memset(block.memory, block.mark, bytes);
    return block;
}

bool Holds(const Block& block) {
    return std::all_of(block.memory, block.memory + block.bytes,
                       [&block](unsigned char byte) { return byte == block.mark; });
}

TEST(SmallBlockAllocator, AlignsEveryBlockForAnyFundamentalType) {
    for (const std::size_t bytes : kSizes) {
        void* const block = allocator::Allocate(bytes);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0U) << bytes << " bytes";
        allocator::Deallocate(block, bytes);
    }
}

TEST(SmallBlockAllocator, GivesBlocksOfManySizesThatDoNotOverlap) {
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < 3000; ++i) {
        blocks.push_back(Take(i, i));
    }
    for (std::size_t i = 0; i < blocks.size(); i += 2) {  // holes for the next ones
        allocator::Deallocate(blocks[i].memory, blocks[i].bytes);
        blocks[i] = Take(blocks[i].bytes / 2 + 1, i + 1);
    }
    for (const Block& block : blocks) {
        EXPECT_TRUE(Holds(block)) << block.bytes << " bytes";
        allocator::Deallocate(block.memory, block.bytes);
    }
}

TEST(SmallBlockAllocator, IgnoresTheReturnOfNull) {
    allocator::Deallocate(nullptr, 0);
    allocator::Deallocate(nullptr, 16);
}

TEST(SmallBlockAllocator, SaysWhenThereIsNoMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizers end a program that asks for so much";
#endif
    constexpr std::size_t kTooMuch = std::numeric_limits<std::size_t>::max() / 2;
    EXPECT_THROW(static_cast<void>(allocator::Allocate(kTooMuch)), std::bad_alloc);
}

TEST(SmallBlockAllocator, RefusesACountWhoseBytesDoNotFit) {
    allocator::Allocator<double> doubles;
    EXPECT_THROW(static_cast<void>(doubles.allocate(std::numeric_limits<std::size_t>::max() / 4)),
                 std::bad_array_new_length);
}

TEST(SmallBlockAllocator, ServesVectorsAndStrings) {
    allocator::vector<int> numbers;
    for (int i = 0; i < 1000; ++i) {
        numbers.push_back(i);
    }
    EXPECT_EQ(numbers.back(), 999);
    allocator::basic_string<char16_t> text;
    for (int i = 0; i < 100; ++i) {
        text += u"bars ";
    }
    EXPECT_EQ(text.size(), 500U);
    allocator::vector<int> moved = std::move(numbers);
    EXPECT_EQ(moved.front(), 0);
    EXPECT_TRUE(allocator::Allocator<int>() == allocator::Allocator<char>());
}

TEST(SmallBlockAllocator, TakesABlockBackFromAnotherThread) {
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < 200; ++i) {
        blocks.push_back(Take(kSizes[i % 12], i));
    }
    std::jthread([&blocks] {
        for (const Block& block : blocks) {
            EXPECT_TRUE(Holds(block));
            allocator::Deallocate(block.memory, block.bytes);
        }
    }).join();
    const Block again = Take(64, 3);
    EXPECT_TRUE(Holds(again));
    allocator::Deallocate(again.memory, again.bytes);
}

TEST(SmallBlockAllocator, ServesFourThreadsThatHandTheirBlocksAround) {
    constexpr std::size_t kThreads = 4;
    constexpr std::size_t kBlocks = 300;
    constexpr int kRounds = 300;
    std::vector<std::vector<Block>> taken(kThreads);
    std::barrier everyone(kThreads);
    std::vector<std::jthread> threads;
    for (std::size_t t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < kRounds; ++round) {
                taken[t].clear();
                for (std::size_t i = 0; i < kBlocks; ++i) {
                    taken[t].push_back(Take(i * 13 % 500, t * kBlocks + i));
                }
                everyone.arrive_and_wait();
                for (const Block& block : taken[(t + 1) % kThreads]) {  // the neighbour's
                    EXPECT_TRUE(Holds(block));
                    allocator::Deallocate(block.memory, block.bytes);
                }
                everyone.arrive_and_wait();
            }
        });
    }
}

}  // namespace
