#include "Host/Services/Frames/CacheSize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

#if defined(__x86_64__)

// What the system found out about the first processor's caches: "32768K" in a file each. 0 where it does not tell.
std::ptrdiff_t LargestCacheThatTheSystemKnows() {
    constexpr std::ptrdiff_t kKibibyte = 1024;
    std::ptrdiff_t largest = 0;
    for (int cache = 0; cache < 8; ++cache) {
        std::ifstream file("/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(cache) + "/size");
        std::ptrdiff_t kibibytes = 0;
        char unit = ' ';
        if (file >> kibibytes >> unit && unit == 'K') {
            largest = std::max(largest, kibibytes * kKibibyte);
        }
    }
    return largest;
}

TEST(CacheSize, IsThatOfTheLargestCache) {
    const std::ptrdiff_t known = LargestCacheThatTheSystemKnows();
    if (known == 0) {
        GTEST_SKIP() << "this system does not tell the sizes of its caches";
    }
    EXPECT_EQ(zelcore::SharedCacheBytes(), known);
}

#else

TEST(CacheSize, IsAUsualOneWhereTheProcessorDoesNotTell) {
    EXPECT_EQ(zelcore::SharedCacheBytes(), 32 * 1024 * 1024);
}

#endif

}  // namespace
