#include "Host/Services/Bundles/PlistCheck.h"

#include <cstdint>
#include <optional>

namespace zelcore {

namespace {

// The binary form: the magic text, the values, a table of the offset of each value, and a trailer of 32
// bytes. A value begins with a byte of its kind (upper half) and its count, or 15 for a count that
// follows as an integer. Lists hold the numbers of their values. Words are big-endian.
constexpr std::string_view kBinaryMagic = "bplist";
constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kTrailerBytes = 32;

enum Kind : unsigned {
    kInteger = 0x1,
    kReal = 0x2,
    kDate = 0x3,
    kData = 0x4,
    kText = 0x5,
    kWideText = 0x6,
    kArray = 0xA,
    kOrderedSet = 0xB,
    kSet = 0xC,
    kDictionary = 0xD,
};

class BinaryPlist {
public:
    explicit BinaryPlist(std::string_view file) : mFile(file) {}

    [[nodiscard]] PlistCheck Check() {
        if (mFile.size() < kHeaderBytes + kTrailerBytes) {
            return PlistCheck::Broken;
        }
        const std::size_t trailer = mFile.size() - kTrailerBytes;
        mOffsetBytes = Byte(trailer + 6);
        mNumberBytes = Byte(trailer + 7);
        mCount = Word(trailer + 8, 8);
        mTable = Word(trailer + 24, 8);
        const bool wordsFit = mOffsetBytes >= 1 && mOffsetBytes <= 8 && mNumberBytes >= 1 && mNumberBytes <= 8;
        if (!wordsFit || !Holds(mTable, mCount, mOffsetBytes)) {
            return PlistCheck::Broken;
        }
        return CheckValue(Word(trailer + 16, 8), 1);
    }

private:
    struct Count {
        std::uint64_t count;
        std::size_t start;  // of what is counted
    };

    [[nodiscard]] unsigned Byte(std::size_t offset) const { return static_cast<unsigned char>(mFile[offset]); }

    [[nodiscard]] std::uint64_t Word(std::size_t offset, std::size_t bytes) const {
        std::uint64_t word = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            word = word << 8U | Byte(offset + i);
        }
        return word;
    }

    // `count` pieces of `bytes` each from `offset` on lie inside the file.
    [[nodiscard]] bool Holds(std::uint64_t offset, std::uint64_t count, std::uint64_t bytes) const {
        return offset <= mFile.size() && count <= (mFile.size() - offset) / bytes;
    }

    // The count of the value at `offset`, which is inside the file.
    [[nodiscard]] std::optional<Count> CountOf(std::size_t offset) const {
        const unsigned inByte = Byte(offset) & 0xFU;
        if (inByte != 0xF) {
            return Count{inByte, offset + 1};
        }
        if (!Holds(offset + 1, 1, 1) || Byte(offset + 1) >> 4U != kInteger) {
            return std::nullopt;
        }
        const std::size_t bytes = std::size_t{1} << (Byte(offset + 1) & 0xFU);
        if (bytes > 8 || !Holds(offset + 2, bytes, 1)) {
            return std::nullopt;
        }
        return Count{Word(offset + 2, bytes), offset + 2 + bytes};
    }

    [[nodiscard]] PlistCheck CheckValue(std::uint64_t number, int depth) {
        if (depth > kDeepestPlistList) {
            return PlistCheck::TooMuch;
        }
        if (number >= mCount) {
            return PlistCheck::Broken;
        }
        const std::uint64_t offset = Word(mTable + number * mOffsetBytes, mOffsetBytes);
        if (!Holds(offset, 1, 1)) {
            return PlistCheck::Broken;
        }
        switch (Byte(offset) >> 4U) {
            case kInteger:
            case kReal:
            case kDate:
                return Spend(0);
            case kData:
            case kText:
                return CheckText(offset, 1);
            case kWideText:
                return CheckText(offset, 2);
            case kArray:
            case kOrderedSet:
            case kSet:
                return CheckList(offset, 1, depth);
            case kDictionary:
                return CheckList(offset, 2, depth);
            default:
                return Spend(0);
        }
    }

    [[nodiscard]] PlistCheck CheckText(std::size_t offset, std::uint64_t unitBytes) {
        const auto count = CountOf(offset);
        if (!count || !Holds(count->start, count->count, unitBytes)) {
            return PlistCheck::Broken;
        }
        return Spend(count->count * unitBytes);
    }

    [[nodiscard]] PlistCheck CheckList(std::size_t offset, std::uint64_t numbersPerItem, int depth) {
        const auto count = CountOf(offset);
        if (!count || !Holds(count->start, count->count, numbersPerItem * mNumberBytes)) {
            return PlistCheck::Broken;
        }
        PlistCheck result = Spend(0);
        const std::uint64_t numbers = count->count * numbersPerItem;
        for (std::uint64_t i = 0; i < numbers && result == PlistCheck::Sound; ++i) {
            result = CheckValue(Word(count->start + i * mNumberBytes, mNumberBytes), depth + 1);
        }
        return result;
    }

    [[nodiscard]] PlistCheck Spend(std::uint64_t bytes) {
        mSpent += bytes + kPlistValueBytes;
        return mSpent > kLargestPlistValues ? PlistCheck::TooMuch : PlistCheck::Sound;
    }

    std::string_view mFile;
    std::size_t mOffsetBytes = 0;
    std::size_t mNumberBytes = 0;
    std::uint64_t mCount = 0;
    std::uint64_t mTable = 0;
    std::uint64_t mSpent = 0;
};

// Lists that are opened: no list lies deeper than there are.
PlistCheck CheckText(std::string_view file) {
    int lists = 0;
    for (const std::string_view opening : {std::string_view("<array"), std::string_view("<dict")}) {
        for (auto at = file.find(opening); at != std::string_view::npos; at = file.find(opening, at + 1)) {
            ++lists;
        }
    }
    return lists > kMostPlistLists ? PlistCheck::TooMuch : PlistCheck::Sound;
}

}  // namespace

PlistCheck CheckPlist(std::string_view file) {
    return file.starts_with(kBinaryMagic) ? BinaryPlist(file).Check() : CheckText(file);
}

}  // namespace zelcore
