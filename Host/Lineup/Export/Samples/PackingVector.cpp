#include "Host/Lineup/Export/Samples/PackingKernels.h"
#include "Host/Lineup/Export/Samples/PackingRegister.h"

// Compiled once for each instruction level (CMakeLists.txt), as the kernels called PACKING_KERNELS. Nothing
// in here may be shared between the levels: no templates or inline functions of the standard library.

namespace lineup {

namespace {

constexpr std::size_t kWidth = sizeof(Floats) / sizeof(float);

// A register's store may reach this many bytes past the last sample that counts.
constexpr std::size_t kSlack = 16;

constexpr std::size_t kMostChannels = 64;

// Registers of six channels, kWidth samples of each.
constexpr int kSixes = 6;

// --- float to integer: what Quantise does, in floats. The scale is a power of two, so the product is exact. ---

// Clipped before it is rounded: both limits are floats, so that what is rounded stays within them.
template <int kBits>
Integers Convert(Floats value) {
    constexpr auto kFullScale = static_cast<float>(std::uint32_t{1} << (kBits - 1));
    return Rounded(Clipped(Scaled(NumbersOnly(value), kFullScale), -kFullScale, kFullScale - 1));
}

// No float is 2^31 - 1. What cannot be converted comes out as 0x80000000: right at the lower end, and one
// bit pattern away from right at the upper.
template <>
Integers Convert<32>(Floats value) {
    constexpr float kFullScale = 2147483648.0F;
    const Floats steps = Scaled(NumbersOnly(value), kFullScale);
    return Xor(Rounded(steps), Reaches(steps, kFullScale));
}

// --- one form for each sample format: kWidth samples of one channel, or of two or six side by side ---

// Six takes a register's lanes one behind the other: those of all `values`, in their order, are four moments.

struct S16 {
    static constexpr std::size_t kBytes = 2;
    static PackFunction* Plain() { return kPackingPlain.s16; }
    static Integers Steps(const float* samples) { return Convert<16>(Load(samples)); }
    static void Six(const Integers (&values)[kSixes], std::uint8_t* packed) {
        for (int i = 0; i < kSixes / 2; ++i) {
            const Integers narrow = Narrowed(values[2 * i], values[2 * i + 1]);
            for (int lane = 0; lane < kLanes; ++lane) {
                Store(packed + std::ptrdiff_t{48} * lane + std::ptrdiff_t{16} * i, Lane(narrow, lane));
            }
        }
    }
    static void One(const float* samples, std::uint8_t* packed) {
        const Integers steps = Convert<16>(Load(samples));
        const Integers narrow = Narrowed(steps, steps);
        for (int lane = 0; lane < kLanes; ++lane) {
            StoreHalf(packed + std::ptrdiff_t{8} * lane, Lane(narrow, lane));
        }
    }
    static void Two(const float* first, const float* second, std::uint8_t* packed) {
        const Integers a = Convert<16>(Load(first));
        const Integers b = Convert<16>(Load(second));
        const Integers narrow = Narrowed(LowPairs(a, b), HighPairs(a, b));
        for (int lane = 0; lane < kLanes; ++lane) {
            Store(packed + std::ptrdiff_t{16} * lane, Lane(narrow, lane));
        }
    }
};

// A store writes twelve bytes, and four that the next store, or the plain form, writes over.
struct S24 {
    static constexpr std::size_t kBytes = 3;
    static PackFunction* Plain() { return kPackingPlain.s24; }
    static Integers Steps(const float* samples) { return Convert<24>(Load(samples)); }
    static void Six(const Integers (&values)[kSixes], std::uint8_t* packed) {
        Integers squeezed[kSixes];
        for (int i = 0; i < kSixes; ++i) {
            squeezed[i] = Squeezed(values[i]);
        }
        for (int lane = 0; lane < kLanes; ++lane) {  // in the order of the bytes: each store's last four go
            for (int i = 0; i < kSixes; ++i) {
                Store(packed + std::ptrdiff_t{72} * lane + std::ptrdiff_t{12} * i, Lane(squeezed[i], lane));
            }
        }
    }
    static void One(const float* samples, std::uint8_t* packed) {
        const Integers squeezed = Squeezed(Convert<24>(Load(samples)));
        for (int lane = 0; lane < kLanes; ++lane) {
            Store(packed + std::ptrdiff_t{12} * lane, Lane(squeezed, lane));
        }
    }
    static void Two(const float* first, const float* second, std::uint8_t* packed) {
        const Integers a = Convert<24>(Load(first));
        const Integers b = Convert<24>(Load(second));
        const Integers low = Squeezed(LowPairs(a, b));
        const Integers high = Squeezed(HighPairs(a, b));
        for (int lane = 0; lane < kLanes; ++lane) {
            Store(packed + std::ptrdiff_t{24} * lane, Lane(low, lane));
            Store(packed + std::ptrdiff_t{24} * lane + 12, Lane(high, lane));
        }
    }
};

template <Integers (*kConvert)(Floats)>
struct Of32 {
    static constexpr std::size_t kBytes = 4;
    static Integers Steps(const float* samples) { return kConvert(Load(samples)); }
    static void Six(const Integers (&values)[kSixes], std::uint8_t* packed) {
        for (int i = 0; i < kSixes; ++i) {
            for (int lane = 0; lane < kLanes; ++lane) {
                Store(packed + std::ptrdiff_t{96} * lane + std::ptrdiff_t{16} * i, Lane(values[i], lane));
            }
        }
    }
    static void One(const float* samples, std::uint8_t* packed) {
        const Integers values = kConvert(Load(samples));
        for (int lane = 0; lane < kLanes; ++lane) {
            Store(packed + std::ptrdiff_t{16} * lane, Lane(values, lane));
        }
    }
    static void Two(const float* first, const float* second, std::uint8_t* packed) {
        const Integers a = kConvert(Load(first));
        const Integers b = kConvert(Load(second));
        for (int lane = 0; lane < kLanes; ++lane) {
            Store(packed + std::ptrdiff_t{32} * lane, Lane(LowPairs(a, b), lane));
            Store(packed + std::ptrdiff_t{32} * lane + 16, Lane(HighPairs(a, b), lane));
        }
    }
};
struct S32 : Of32<Convert<32>> {
    static PackFunction* Plain() { return kPackingPlain.s32; }
};
struct F32 : Of32<Bits> {
    static PackFunction* Plain() { return kPackingPlain.f32; }
};

// --- any number of channels ---

/// Six channels of 5.1, side by side without leaving the registers.
template <class Format>
void PackSix(const float* const* channels, std::size_t at, std::uint8_t* packed) {
    const Integers a = Format::Steps(channels[0] + at);
    const Integers b = Format::Steps(channels[1] + at);
    const Integers c = Format::Steps(channels[2] + at);
    const Integers d = Format::Steps(channels[3] + at);
    const Integers e = Format::Steps(channels[4] + at);
    const Integers f = Format::Steps(channels[5] + at);
    const Integers values[kSixes] = {
        LowHalves(LowPairs(a, b), LowPairs(c, d)),          LowAndHighHalves(LowPairs(e, f), LowPairs(a, b)),
        HighHalves(LowPairs(c, d), LowPairs(e, f)),         LowHalves(HighPairs(a, b), HighPairs(c, d)),
        LowAndHighHalves(HighPairs(e, f), HighPairs(a, b)), HighHalves(HighPairs(c, d), HighPairs(e, f)),
    };
    Format::Six(values, packed);
}

/// Several pairs of channels: each pair by itself, then moment by moment side by side.
template <class Format>
void PackPairs(const float* const* channels, std::size_t pairs, std::size_t at, std::uint8_t* packed) {
    constexpr std::size_t kPairBytes = 2 * Format::kBytes;
    // Six bytes are copied as eight: the next pair, or the plain form, writes over the two behind.
    constexpr std::size_t kCopiedBytes = kPairBytes == 6 ? 8 : kPairBytes;
    alignas(32) std::uint8_t block[kMostChannels / 2][kWidth * kPairBytes + kSlack];
    for (std::size_t p = 0; p < pairs; ++p) {
        Format::Two(channels[2 * p] + at, channels[2 * p + 1] + at, block[p]);
    }
    for (std::size_t i = 0; i < kWidth; ++i) {
        for (std::size_t p = 0; p < pairs; ++p) {
            std::memcpy(packed, block[p] + i * kPairBytes, kCopiedBytes);
            packed += kPairBytes;
        }
    }
}

template <class Format>
void PackFull(const float* const* channels, std::size_t numChannels, std::size_t at, std::uint8_t* packed) {
    if (numChannels == 1) {
        Format::One(channels[0] + at, packed);
    } else if (numChannels == 2) {
        Format::Two(channels[0] + at, channels[1] + at, packed);
    } else if (numChannels == 6) {
        PackSix<Format>(channels, at, packed);
    } else {
        PackPairs<Format>(channels, numChannels / 2, at, packed);
    }
}

template <class Format>
void Pack(const float* const* channels, std::size_t numChannels, std::size_t count, std::uint8_t* packed) {
    const bool served = numChannels == 1 || (numChannels % 2 == 0 && numChannels <= kMostChannels);
    std::size_t done = 0;
    if (served && numChannels > 0) {
        const std::size_t frameBytes = numChannels * Format::kBytes;
        // As long as what a store writes past its samples is overwritten by later ones.
        const std::size_t behind = (kSlack + frameBytes - 1) / frameBytes;
        for (; count - done >= kWidth + behind; done += kWidth) {
            PackFull<Format>(channels, numChannels, done, packed + done * frameBytes);
        }
    }
    const float* rest[kMostChannels];
    if (done == 0 || numChannels > kMostChannels) {
        Format::Plain()(channels, numChannels, count, packed);
        return;
    }
    for (std::size_t c = 0; c < numChannels; ++c) {
        rest[c] = channels[c] + done;
    }
    Format::Plain()(rest, numChannels, count - done, packed + done * numChannels * Format::kBytes);
}

}  // namespace

const PackingKernels PACKING_KERNELS = {Pack<S16>, Pack<S24>, Pack<S32>, Pack<F32>};

}  // namespace lineup
