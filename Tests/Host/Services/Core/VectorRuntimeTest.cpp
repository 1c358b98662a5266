#include "Host/Interface/Core/ByteKernels.h"
#include "Host/Interface/Core/VectorRuntime.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using testing::Each;

#if defined(__x86_64__)

// What the operating system says the processor offers; empty where it does not say it in this form.
std::set<std::string> ProcessorFlags() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("flags")) {
            std::istringstream words(line.substr(line.find(':') + 1));
            return {std::istream_iterator<std::string>(words), {}};
        }
    }
    return {};
}

TEST(VectorRuntime, NamesTheWidestVariantThatTheOperatingSystemVouchesFor) {
    const std::set<std::string> flags = ProcessorFlags();
    if (flags.empty()) {
        GTEST_SKIP() << "no processor flags to compare with";
    }
    const auto has = [&flags](const char* flag) { return flags.contains(flag); };
    const std::int32_t expected = has("avx512f")                  ? kVectorK0
                                  : has("avx2") && has("fma")     ? kVectorL9
                                  : has("avx")                    ? kVectorE9
                                  : has("ssse3") && has("sse4_1") ? kVectorY8
                                                                  : kVectorN8;
    ippSafeInit();
    EXPECT_EQ(ippJumpIndexForMergedLibs, expected);
}

#elif defined(__aarch64__)

TEST(VectorRuntime, NamesTheVariantThatEverySuchProcessorRuns) {
    ippSafeInit();
    EXPECT_EQ(ippJumpIndexForMergedLibs, kVectorNeon);
}

#endif

TEST(VectorRuntime, InitialisesToTheSameIndexEveryTime) {
    ippSafeInit();
    const std::int32_t first = ippJumpIndexForMergedLibs;
    ippSafeInit();
    EXPECT_EQ(ippJumpIndexForMergedLibs, first);
    ippJumpIndexForMergedLibs = kVectorNotInitialised;
    ippSafeInit();
    EXPECT_EQ(ippJumpIndexForMergedLibs, first);
}

constexpr std::int64_t kSizes[] = {1, 3, 4, 63, 64, 65, 32'767, 32'768, 2'097'152, 2'097'153};
constexpr unsigned char kUntouched = 0xCC;

TEST(ByteKernels, CopyExactlyTheBytesTheyAreGiven) {
    for (const auto& copy : {ippCopyBytes, ippCopyBytes_E9, ippCopyBytes_repE9}) {
        for (const std::int64_t bytes : kSizes) {
            const auto count = static_cast<std::size_t>(bytes);
            std::vector<unsigned char> source(count);
            std::iota(source.begin(), source.end(), static_cast<unsigned char>(1));
            std::vector<unsigned char> memory(count + 2, kUntouched);
            std::vector<unsigned char> expected = memory;
            std::copy(source.begin(), source.end(), expected.begin() + 1);
            copy(source.data(), memory.data() + 1, bytes);
            ASSERT_TRUE(memory == expected) << bytes << " bytes";
        }
    }
}

TEST(ByteKernels, ZeroExactlyTheBytesTheyAreGiven) {
    for (const auto& zero : {ippZeroBytes, ippZeroBytes_E9}) {
        for (const std::int64_t bytes : kSizes) {
            const auto count = static_cast<std::size_t>(bytes);
            std::vector<unsigned char> memory(count + 2, kUntouched);
            std::vector<unsigned char> expected(count + 2, 0);
            expected.front() = expected.back() = kUntouched;
            zero(memory.data() + 1, bytes);
            ASSERT_TRUE(memory == expected) << bytes << " bytes";
        }
    }
}

TEST(ByteKernels, DoNothingForASizeOfZeroOrLess) {
    const std::vector<unsigned char> source(4, 1);
    std::vector<unsigned char> memory(4, kUntouched);
    for (const std::int64_t bytes : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN}) {
        for (const auto& copy : {ippCopyBytes, ippCopyBytes_E9, ippCopyBytes_repE9}) {
            copy(source.data(), memory.data(), bytes);
        }
        ippZeroBytes(memory.data(), bytes);
        ippZeroBytes_E9(memory.data(), bytes);
    }
    EXPECT_THAT(memory, Each(kUntouched));
}

TEST(ByteKernels, CopyABlockOntoItself) {
    std::vector<unsigned char> memory(40'000, 7);
    for (const auto& copy : {ippCopyBytes, ippCopyBytes_E9, ippCopyBytes_repE9}) {
        copy(memory.data(), memory.data(), 40'000);
    }
    EXPECT_THAT(memory, Each(7));
}

}  // namespace
