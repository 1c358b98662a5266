#include "Tests/Src/VectorPrimitives/VectorTest.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <utility>
#include <vector>

// Every variant of every primitive against the plain loop, bit for bit. The whole memory is compared, so a float too
// few or too many shows as well.

namespace {

using test::Arena;
using vectorkernels::Kernels;

// A primitive, and what it is to do.
struct Operation {
    const char* name;
    IppStatus (*run)(const Kernels& primitives, const float* source, float* destination, int len);
    void (*plain)(const float* source, float* destination, int len);
};

constexpr float kFactor = -0.3F;  // makes denormals of the smallest normals, and rounds

std::size_t Bytes(int len) {
    return static_cast<std::size_t>(len) * sizeof(float);
}
void CopyPlainly(const float* source, float* destination, int len) {
    std::memcpy(destination, source, Bytes(len));
}
void MultiplyPlainly(const float* source, float* destination, int len) {
    test::PlainMultiply(source, kFactor, destination, len);
}

constexpr Operation kOperations[] = {
    {"Copied",
     [](const Kernels& primitives, const float* source, float* destination, int len) {
         return primitives.copy(source, destination, len);
     },
     CopyPlainly},
    {"Zeroed",
     [](const Kernels& primitives, const float* /*source*/, float* destination, int len) {
         return primitives.zero(destination, len);
     },
     [](const float* /*source*/, float* destination, int len) { std::memset(destination, 0, Bytes(len)); }},
    {"Multiplied",
     [](const Kernels& primitives, const float* source, float* destination, int len) {
         return primitives.multiply(source, kFactor, destination, len);
     },
     MultiplyPlainly},
    {"MultipliedInPlace",
     [](const Kernels& primitives, const float* source, float* destination, int len) {
         CopyPlainly(source, destination, len);
         return primitives.multiply(destination, kFactor, destination, len);
     },
     MultiplyPlainly},
    {"CopiedOntoThemselvesAndMultipliedByOne",
     [](const Kernels& primitives, const float* source, float* destination, int len) {
         CopyPlainly(source, destination, len);
         const IppStatus status = primitives.copy(destination, destination, len);
         return status == ippStsNoErr ? primitives.multiply(destination, 1.0F, destination, len) : status;
     },
     CopyPlainly},
};

// Floats past a 64-byte boundary, of the source and the destination.
using Alignments = std::vector<std::pair<std::size_t, std::size_t>>;

class Buffers : public test::VariantTest {
protected:
    void Compare(const std::vector<int>& lengths, const Alignments& alignments) const {
        const auto capacity = static_cast<std::size_t>(lengths.back());
        Arena source(capacity);
        test::WriteEveryKindOfFloat(source.Memory());
        Arena actual(capacity);
        Arena expected(capacity);
        for (const Operation& operation : kOperations) {
            for (const auto& [from, to] : alignments) {
                for (const int len : lengths) {
                    actual.Reset();
                    expected.Reset();
                    ASSERT_EQ(operation.run(Primitives(), source.At(from), actual.At(to), len), ippStsNoErr);
                    operation.plain(source.At(from), expected.At(to), len);
                    ASSERT_TRUE(actual.SameBits(expected))
                        << operation.name << ": " << len << " floats, source " << from << " and destination " << to
                        << " floats past a 64-byte boundary";
                }
            }
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Variants, Buffers, testing::ValuesIn(test::kVariants), test::VariantName);

TEST_P(Buffers, OfEveryShortLengthAndAlignmentHoldWhatThePlainLoopGives) {
    std::vector<int> lengths(160);  // a head, two steps of the widest registers, a tail
    std::iota(lengths.begin(), lengths.end(), 1);
    Alignments alignments;
    for (const std::size_t from : {0U, 1U, 4U, 15U}) {
        for (std::size_t to = 0; to < 16; ++to) {
            alignments.emplace_back(from, to);
        }
    }
    Compare(lengths, alignments);
}

TEST_P(Buffers, RoundEverySizeAtWhichAVariantChangesItsWayHoldWhatThePlainLoopGives) {
    const std::vector<int> lengths = {1023, 4095,
                                      // 32 KiB: the large form of the copy
                                      8191, 8192, 8193,
                                      // products that 128-bit registers stream
                                      131'071, 131'072, 131'079, 131'080, 131'087,
                                      // 2 MiB: the large form of the zero
                                      524'287, 524'288, 524'289};
    // Streamed, streamed behind a head, never streamed.
    Compare(lengths, {{0, 0}, {5, 5}, {1, 0}, {2, 7}});
}

TEST_P(Buffers, RoundTheSizeFromWhichWideRegistersStreamHoldWhatThePlainLoopGives) {
    Compare({4'194'303, 4'194'304, 4'194'320, 4'194'336, 4'194'383}, {{0, 0}, {5, 5}});
}

}  // namespace
