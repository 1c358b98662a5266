#include "Tests/Mac/Loader/CompactUnwind.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace test {

namespace {

// The section's records. Offsets count from its beginning, functions from the file's address 0.

struct Header {
    std::uint32_t version;
    std::uint32_t commonEncodings;
    std::uint32_t commonEncodingCount;
    std::uint32_t personalities;
    std::uint32_t personalityCount;
    std::uint32_t pages;
    std::uint32_t pageCount;  // one more than there are: the last one tells where the code ends
};
struct PageIndex {
    std::uint32_t firstFunction;
    std::uint32_t page;
    std::uint32_t handlerTables;
};
struct HandlerTable {
    std::uint32_t function;
    std::uint32_t table;
};

constexpr std::uint32_t kRegularPage = 2;
struct RegularPage {
    std::uint32_t kind;
    std::uint16_t entries;
    std::uint16_t entryCount;
};
struct RegularEntry {
    std::uint32_t function;
    std::uint32_t encoding;
};

constexpr std::uint32_t kCompressedPage = 3;
struct CompressedPage {
    std::uint32_t kind;
    std::uint16_t entries;
    std::uint16_t entryCount;
    std::uint16_t encodings;
    std::uint16_t encodingCount;
};
constexpr std::uint32_t kFunctionBits = 24;  // of a compressed entry; the others number its encoding

constexpr std::uint32_t kPersonalityMask = 0x3000'0000;
constexpr std::uint32_t kPersonalityShift = 28;

class Section {
public:
    explicit Section(const std::uint8_t* bytes) : mBytes(bytes), mHeader(Read<Header>(0)) {}

    std::vector<UnwindEntry> Entries() {
        for (std::uint32_t i = 0; i + 1 < mHeader.pageCount; ++i) {
            AddPage(i);
        }
        for (std::size_t i = 0; i < mEntries.size(); ++i) {
            mEntries[i].end =
                i + 1 < mEntries.size() ? mEntries[i + 1].begin : Index(mHeader.pageCount - 1).firstFunction;
        }
        AddHandlerTables();
        return mEntries;
    }

private:
    template <class T>
    [[nodiscard]] T Read(std::size_t offset) const {
        T record;
        std::memcpy(&record, mBytes + offset, sizeof record);
        return record;
    }

    [[nodiscard]] PageIndex Index(std::uint32_t page) const {
        return Read<PageIndex>(mHeader.pages + page * sizeof(PageIndex));
    }

    void AddPage(std::uint32_t number) {
        const PageIndex index = Index(number);
        if (Read<std::uint32_t>(index.page) == kRegularPage) {
            const auto page = Read<RegularPage>(index.page);
            for (std::uint32_t i = 0; i < page.entryCount; ++i) {
                const auto entry = Read<RegularEntry>(index.page + page.entries + i * sizeof(RegularEntry));
                Add(entry.function, entry.encoding);
            }
        } else if (Read<std::uint32_t>(index.page) == kCompressedPage) {
            const auto page = Read<CompressedPage>(index.page);
            for (std::uint32_t i = 0; i < page.entryCount; ++i) {
                const auto entry = Read<std::uint32_t>(index.page + page.entries + i * sizeof(std::uint32_t));
                const std::uint32_t function = entry & ((1U << kFunctionBits) - 1);
                Add(index.firstFunction + function, EncodingOf(index.page, page, entry >> kFunctionBits));
            }
        } else {
            throw std::runtime_error("the unwinding is described in an unknown form");
        }
    }

    [[nodiscard]] std::uint32_t EncodingOf(std::uint32_t pageOffset, const CompressedPage& page,
                                           std::uint32_t number) const {
        const std::uint32_t common = mHeader.commonEncodingCount;
        if (number < common) {
            return Read<std::uint32_t>(mHeader.commonEncodings + number * sizeof number);
        }
        return Read<std::uint32_t>(pageOffset + page.encodings + (number - common) * sizeof number);
    }

    void Add(std::uint32_t function, std::uint32_t encoding) {
        UnwindEntry entry{.begin = function, .encoding = encoding};
        const std::uint32_t personality = (encoding & kPersonalityMask) >> kPersonalityShift;
        if (personality > mHeader.personalityCount) {
            throw std::runtime_error("a function has an unknown personality");
        }
        if (personality != 0) {
            entry.personality = Read<std::uint32_t>(mHeader.personalities + (personality - 1) * sizeof(std::uint32_t));
        }
        mEntries.push_back(entry);
    }

    void AddHandlerTables() {
        const std::uint32_t end = Index(mHeader.pageCount - 1).handlerTables;
        for (std::uint32_t offset = Index(0).handlerTables; offset < end; offset += sizeof(HandlerTable)) {
            const auto table = Read<HandlerTable>(offset);
            const auto entry = std::ranges::lower_bound(mEntries, table.function, {}, &UnwindEntry::begin);
            if (entry == mEntries.end() || entry->begin != table.function) {
                throw std::runtime_error("a table of handlers belongs to no function");
            }
            entry->handlerTable = table.table;
        }
    }

    const std::uint8_t* mBytes;
    Header mHeader;
    std::vector<UnwindEntry> mEntries;
};

}  // namespace

std::vector<UnwindEntry> ReadCompactUnwind(const std::uint8_t* section) {
    return Section(section).Entries();
}

}  // namespace test
