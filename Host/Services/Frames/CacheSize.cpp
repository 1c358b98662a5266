#include "Host/Services/Frames/CacheSize.h"

#include <algorithm>

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace zelcore {

namespace {

constexpr std::ptrdiff_t kUsualBytes = 33'554'432;

#if defined(__x86_64__)

// The leaves that describe a cache at each sub-leaf in one and the same form: Intel's, AMD's.
constexpr unsigned kLeaves[] = {0x0000'0004, 0x8000'001D};
constexpr unsigned kMostCaches = 8;

// The parameters of a cache lie side by side in the registers, each less 1.
constexpr std::ptrdiff_t Field(unsigned value, unsigned firstBit, unsigned bits) {
    return std::ptrdiff_t{(value >> firstBit) & ((1U << bits) - 1U)} + 1;
}

std::ptrdiff_t LargestOf(unsigned leaf) {
    std::ptrdiff_t largest = 0;
    for (unsigned cache = 0; cache < kMostCaches; ++cache) {
        unsigned eax = 0;
        unsigned ebx = 0;
        unsigned ecx = 0;
        unsigned edx = 0;
        if (__get_cpuid_count(leaf, cache, &eax, &ebx, &ecx, &edx) == 0 || (eax & 0x1FU) == 0) {
            break;  // no such leaf, or no further cache
        }
        const std::ptrdiff_t lineBytes = Field(ebx, 0, 12);
        const std::ptrdiff_t partitions = Field(ebx, 12, 10);
        const std::ptrdiff_t ways = Field(ebx, 22, 10);
        const std::ptrdiff_t sets = std::ptrdiff_t{ecx} + 1;
        largest = std::max(largest, lineBytes * partitions * ways * sets);
    }
    return largest;
}

std::ptrdiff_t LargestCache() {
    std::ptrdiff_t largest = 0;
    for (const unsigned leaf : kLeaves) {
        largest = std::max(largest, LargestOf(leaf));
    }
    return largest;
}

#else

std::ptrdiff_t LargestCache() {
    return 0;
}

#endif

}  // namespace

std::ptrdiff_t SharedCacheBytes() noexcept {
    const std::ptrdiff_t bytes = LargestCache();
    return bytes != 0 ? bytes : kUsualBytes;
}

}  // namespace zelcore
