#include "Host/Interface/Core/SmallBlockAllocator.h"

#include <array>
#include <new>

namespace zelcore::utility::SmallBlockAllocator {

namespace {

constexpr std::size_t kGranule = 64;  // what a block's size is rounded up to: every channel list has one size
constexpr std::size_t kSizes = 4;     // blocks of up to 256 bytes are kept
constexpr std::size_t kMostKept = 64;

constexpr std::size_t SizeIndex(std::size_t bytes) {
    return bytes == 0 ? 0 : (bytes - 1) / kGranule;
}

/// Blocks that a thread has returned and will take again: the lists of an audio request, built and freed
/// for each of its pieces, take neither a lock nor memory of the heap after the first of their size.
class KeptBlocks {
public:
    void* Take(std::size_t index) {
        List& list = mLists[index];
        Kept* const block = list.first;
        if (block == nullptr) {
            return ::operator new(BlockBytes(index));
        }
        list.first = block->next;
        --list.count;
        return block;
    }

    void Return(void* block, std::size_t index);

    /// Gives the blocks back to the heap, and from now on each one that is returned.
    void End() {
        mMostKept = 0;
        for (std::size_t index = 0; index < kSizes; ++index) {
            while (mLists[index].first != nullptr) {
                ::operator delete(Take(index));
            }
        }
    }

private:
    struct Kept {
        Kept* next;
    };
    struct List {
        Kept* first = nullptr;
        std::size_t count = 0;
    };

    static constexpr std::size_t BlockBytes(std::size_t index) { return (index + 1) * kGranule; }

    std::array<List, kSizes> mLists;
    std::size_t mMostKept = kMostKept;
};

// Nothing destroys it, so that the thread's last destructors may still take and return blocks.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): one a thread
constinit thread_local KeptBlocks tKeptBlocks;

struct AtThreadEnd {
    AtThreadEnd() = default;
    ~AtThreadEnd() { tKeptBlocks.End(); }
    AtThreadEnd(const AtThreadEnd&) = delete;
    AtThreadEnd& operator=(const AtThreadEnd&) = delete;
    AtThreadEnd(AtThreadEnd&&) = delete;
    AtThreadEnd& operator=(AtThreadEnd&&) = delete;
};

void KeptBlocks::Return(void* block, std::size_t index) {
    thread_local const AtThreadEnd atThreadEnd;
    List& list = mLists[index];
    if (list.count >= mMostKept) {
        ::operator delete(block);
        return;
    }
    list.first = new (block) Kept{list.first};
    ++list.count;
}

bool IsKept(std::size_t bytes) {
    return bytes <= kSizes * kGranule;
}

}  // namespace

void* Allocate(std::size_t bytes) {
    return IsKept(bytes) ? tKeptBlocks.Take(SizeIndex(bytes)) : ::operator new(bytes);
}

void Deallocate(void* block, std::size_t bytes) noexcept {
    if (block == nullptr) {
        return;
    }
    if (IsKept(bytes)) {
        tKeptBlocks.Return(block, SizeIndex(bytes));
    } else {
        ::operator delete(block);
    }
}

}  // namespace zelcore::utility::SmallBlockAllocator
