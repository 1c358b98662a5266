#include "Host/Interface/Core/ByteKernels.h"
#include "Tests/Src/VectorPrimitives/VectorTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <utility>
#include <vector>

// Which of the host's byte kernels a variant calls, and with what. This program puts its own kernels in
// front of the host's; they note the call and touch no memory, so the longest buffers cost nothing.

namespace {

struct Call {
    std::string kernel;
    std::int64_t sourceOffset;  // bytes into the source; -1 for a zero
    std::int64_t destinationOffset;
    std::int64_t bytes;

    bool operator==(const Call&) const = default;
};

void PrintTo(const Call& call, std::ostream* out) {
    *out << call.kernel << "(+" << call.sourceOffset << ", +" << call.destinationOffset << ", " << call.bytes << ")";
}

// Address space without memory behind it: to read or write it is a fault.
class Unreachable {
public:
    explicit Unreachable(std::size_t bytes)
        : mBytes(bytes), mMemory(mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {
        if (mMemory == MAP_FAILED) {
            throw std::runtime_error("cannot reserve address space");
        }
    }
    ~Unreachable() { munmap(mMemory, mBytes); }
    Unreachable(const Unreachable&) = delete;
    Unreachable& operator=(const Unreachable&) = delete;

    [[nodiscard]] float* Floats() const { return static_cast<float*>(mMemory); }
    [[nodiscard]] std::int64_t OffsetOf(const void* address) const {
        return static_cast<const char*>(address) - static_cast<const char*>(mMemory);
    }

private:
    std::size_t mBytes;
    void* mMemory;
};

constexpr int kLongest = std::numeric_limits<int>::max();

struct Recorder {
    Unreachable source{std::size_t{kLongest} * sizeof(float)};
    Unreachable destination{std::size_t{kLongest} * sizeof(float)};
    std::vector<Call> calls;
};
Recorder* gRecorder = nullptr;

void NoteCopy(const char* kernel, const void* source, const void* destination, std::int64_t bytes) {
    gRecorder->calls.push_back(
        {kernel, gRecorder->source.OffsetOf(source), gRecorder->destination.OffsetOf(destination), bytes});
}
void NoteZero(const char* kernel, const void* destination, std::int64_t bytes) {
    gRecorder->calls.push_back({kernel, -1, gRecorder->destination.OffsetOf(destination), bytes});
}

}  // namespace

void ippCopyBytes(const void* source, void* destination, std::int64_t bytes) {
    NoteCopy("copy", source, destination, bytes);
}
void ippCopyBytes_E9(const void* source, void* destination, std::int64_t bytes) {
    NoteCopy("copy_E9", source, destination, bytes);
}
void ippCopyBytes_repE9(const void* source, void* destination, std::int64_t bytes) {
    NoteCopy("copy_repE9", source, destination, bytes);
}
void ippZeroBytes(void* destination, std::int64_t bytes) {
    NoteZero("zero", destination, bytes);
}
void ippZeroBytes_E9(void* destination, std::int64_t bytes) {
    NoteZero("zero_E9", destination, bytes);
}

namespace {

class ByteKernels : public test::VariantTest {
protected:
    void SetUp() override {
        test::VariantTest::SetUp();
        gRecorder = &mRecorder;
    }
    void TearDown() override {
        gRecorder = nullptr;
        test::VariantTest::TearDown();
    }

    // The calls that a primitive makes for `len` floats.
    std::vector<Call> CopyCalls(int len) {
        EXPECT_EQ(Copy(mRecorder.source.Floats(), mRecorder.destination.Floats(), len), ippStsNoErr);
        return std::exchange(mRecorder.calls, {});
    }
    std::vector<Call> ZeroCalls(int len) {
        EXPECT_EQ(Zero(mRecorder.destination.Floats(), len), ippStsNoErr);
        return std::exchange(mRecorder.calls, {});
    }
    std::vector<Call> MultiplyCalls(float val, int len) {
        EXPECT_EQ(Multiply(mRecorder.source.Floats(), val, mRecorder.destination.Floats(), len), ippStsNoErr);
        return std::exchange(mRecorder.calls, {});
    }

    // The kernel for copies of 32 KiB and more.
    static std::string LargeCopy() { return GetParam().name == std::string("e9") ? "copy_repE9" : "copy"; }

private:
    Recorder mRecorder;
};

std::vector<test::Variant> VariantsThat(bool areWide) {
    std::vector<test::Variant> variants;
    std::ranges::copy_if(test::kVariants, std::back_inserter(variants),
                         [areWide](const test::Variant& variant) { return (variant.registerBytes > 16) == areWide; });
    return variants;
}

// The variants that leave copying to the host; not every processor has one.
class WideByteKernels : public ByteKernels {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WideByteKernels);
INSTANTIATE_TEST_SUITE_P(Variants, WideByteKernels, testing::ValuesIn(VariantsThat(true)), test::VariantName);

TEST_P(WideByteKernels, CopyLessThan32KiBWithTheE9Form) {
    EXPECT_EQ(CopyCalls(1), (std::vector<Call>{{"copy_E9", 0, 0, 4}}));
    EXPECT_EQ(CopyCalls(8191), (std::vector<Call>{{"copy_E9", 0, 0, 32'764}}));
}

TEST_P(WideByteKernels, CopyFrom32KiBOnWithTheLargeForm) {
    EXPECT_EQ(CopyCalls(8192), (std::vector<Call>{{LargeCopy(), 0, 0, 32'768}}));
}

TEST_P(WideByteKernels, CopyInOneCallWhileItsBytesFitAnInt) {
    EXPECT_EQ(CopyCalls(536'870'911), (std::vector<Call>{{LargeCopy(), 0, 0, 2'147'483'644}}));
}

// 536,870,912 floats: 536,870,904 of them, then 8.
TEST_P(WideByteKernels, CopyOneFloatMoreInTwoCalls) {
    EXPECT_EQ(CopyCalls(536'870'912),
              (std::vector<Call>{{LargeCopy(), 0, 0, 2'147'483'616}, {"copy_E9", 2'147'483'616, 2'147'483'616, 32}}));
}

// 2,147,483,647 floats: four times 536,870,904, then 31.
TEST_P(WideByteKernels, CopyTheLongestBufferInFiveCalls) {
    constexpr std::int64_t kChunk = 2'147'483'616;
    EXPECT_EQ(CopyCalls(kLongest), (std::vector<Call>{{LargeCopy(), 0, 0, kChunk},
                                                      {LargeCopy(), kChunk, kChunk, kChunk},
                                                      {LargeCopy(), 2 * kChunk, 2 * kChunk, kChunk},
                                                      {LargeCopy(), 3 * kChunk, 3 * kChunk, kChunk},
                                                      {"copy_E9", 4 * kChunk, 4 * kChunk, 124}}));
}

TEST_P(WideByteKernels, ZeroUpTo2MiBWithTheE9FormAndMoreWithThePlainOne) {
    EXPECT_EQ(ZeroCalls(1), (std::vector<Call>{{"zero_E9", -1, 0, 4}}));
    EXPECT_EQ(ZeroCalls(524'288), (std::vector<Call>{{"zero_E9", -1, 0, 2'097'152}}));
    EXPECT_EQ(ZeroCalls(524'289), (std::vector<Call>{{"zero", -1, 0, 2'097'156}}));
}

TEST_P(WideByteKernels, ZeroTheLongestBufferInOneCall) {
    EXPECT_EQ(ZeroCalls(kLongest), (std::vector<Call>{{"zero", -1, 0, 8'589'934'588}}));
}

TEST_P(WideByteKernels, ServeAProductWithOneAndWithZeroTheSameWay) {
    EXPECT_EQ(MultiplyCalls(1.0F, 8192), (std::vector<Call>{{LargeCopy(), 0, 0, 32'768}}));
    EXPECT_EQ(MultiplyCalls(0.0F, 524'288), (std::vector<Call>{{"zero_E9", -1, 0, 2'097'152}}));
}

// The variants that copy with a kernel of their own.
class NarrowByteKernels : public ByteKernels {};
INSTANTIATE_TEST_SUITE_P(Variants, NarrowByteKernels, testing::ValuesIn(VariantsThat(false)), test::VariantName);

TEST_P(NarrowByteKernels, ZeroWithThePlainFormAtEverySize) {
    EXPECT_EQ(ZeroCalls(1), (std::vector<Call>{{"zero", -1, 0, 4}}));
    EXPECT_EQ(ZeroCalls(kLongest), (std::vector<Call>{{"zero", -1, 0, 8'589'934'588}}));
    EXPECT_EQ(MultiplyCalls(0.0F, 3), (std::vector<Call>{{"zero", -1, 0, 12}}));
}

TEST_P(NarrowByteKernels, CopyWithoutTheHost) {
    const std::vector<float> source(9000, 2.5F);
    std::vector<float> destination(source.size(), 0.0F);
    EXPECT_EQ(Copy(source.data(), destination.data(), 9000), ippStsNoErr);
    EXPECT_EQ(destination, source);
    EXPECT_EQ(MultiplyCalls(0.0F, 3).size(), 1U);  // the zero alone: the copy left no call behind
}

}  // namespace
