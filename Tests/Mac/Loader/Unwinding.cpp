#include "Tests/Mac/Loader/Unwinding.h"

#include "Tests/Mac/Loader/CompactUnwind.h"

#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <vector>

/// The unwinder's own: makes a description known to it, which has to stay where it is.
extern "C" void __register_frame(const void* description);  // NOLINT(readability-identifier-naming)

namespace test {

namespace {

// The encoding of a function with a frame pointer: where above the frame its caller's registers are saved.
constexpr std::uint32_t kModeMask = 0x0F00'0000;
constexpr std::uint32_t kModeFramePointer = 0x0100'0000;
constexpr std::uint32_t kSavedOffsetShift = 16;  // eight bits: where the first one lies, in pointers below the frame
constexpr std::uint32_t kSavedOffsetMask = 0xFF;
constexpr int kSavedRegisters = 5;  // three bits each, from the lowest
constexpr std::uint32_t kRegisterBits = 3;
constexpr std::uint32_t kRegisterMask = 7;

// The registers by those three bits, as DWARF numbers them: rbx and r12 to r15. 0 is none.
constexpr std::array<std::uint8_t, 8> kDwarfRegisters = {0, 3, 12, 13, 14, 15, 0, 0};
constexpr std::uint8_t kFrameRegister = 6;
constexpr std::uint8_t kReturnAddress = 16;

constexpr std::uint8_t kDefineFrame = 0x0C;  // the frame is a register and an offset from it
constexpr std::uint8_t kSavedAt = 0x80;      // with a register's number: its place in pointers below the frame
constexpr std::uint8_t kPlainAddress = 0;

class Description {
public:
    template <class T>
    void Put(T value) {
        const std::size_t at = mBytes.size();
        mBytes.resize(at + sizeof value);
        std::memcpy(mBytes.data() + at, &value, sizeof value);
    }
    void Put(std::string_view text) {
        mBytes.insert(mBytes.end(), text.begin(), text.end());
        mBytes.push_back(0);
    }

    [[nodiscard]] std::size_t Size() const { return mBytes.size(); }
    [[nodiscard]] const std::uint8_t* Data() const { return mBytes.data(); }

    /// Begins a record; its length is put in by End.
    void Begin() {
        mRecord = mBytes.size();
        Put(std::uint32_t{0});
    }
    void End() {
        while (mBytes.size() % sizeof(std::uint64_t) != 0) {
            mBytes.push_back(0);  // says nothing
        }
        const auto length = static_cast<std::uint32_t>(mBytes.size() - mRecord - sizeof(std::uint32_t));
        std::memcpy(mBytes.data() + mRecord, &length, sizeof length);
    }

private:
    std::vector<std::uint8_t> mBytes;
    std::size_t mRecord = 0;
};

// What the descriptions of functions with one personality share.
void PutCommon(Description& description, const void* personality) {
    description.Begin();
    description.Put(std::uint32_t{0});  // this is the common part
    description.Put(std::uint8_t{1});   // version
    description.Put(std::string_view("zPLR"));
    description.Put(std::uint8_t{1});     // code counts in bytes
    description.Put(std::uint8_t{0x78});  // places count in -8 bytes
    description.Put(kReturnAddress);
    description.Put(static_cast<std::uint8_t>(sizeof personality + 3));
    description.Put(kPlainAddress);
    description.Put(personality);
    description.Put(kPlainAddress);  // of tables of handlers
    description.Put(kPlainAddress);  // of functions
    // Two pointers above the frame register lies the frame: below it the return address, then the caller's register.
    for (const std::uint8_t byte :
         {kDefineFrame, kFrameRegister, std::uint8_t{16}, static_cast<std::uint8_t>(kSavedAt | kReturnAddress),
          std::uint8_t{1}, static_cast<std::uint8_t>(kSavedAt | kFrameRegister), std::uint8_t{2}}) {
        description.Put(byte);
    }
    description.End();
}

void PutFunction(Description& description, const UnwindEntry& entry, const std::uint8_t* base) {
    description.Begin();
    description.Put(static_cast<std::uint32_t>(description.Size()));  // back to the common part, at 0
    description.Put(base + entry.begin);
    description.Put(entry.end - entry.begin);
    description.Put(static_cast<std::uint8_t>(sizeof(void*)));
    description.Put(entry.handlerTable == 0 ? nullptr : base + entry.handlerTable);
    const std::uint32_t first = entry.encoding >> kSavedOffsetShift & kSavedOffsetMask;
    for (std::uint32_t i = 0; i < kSavedRegisters; ++i) {
        const std::uint8_t saved = kDwarfRegisters[entry.encoding >> (i * kRegisterBits) & kRegisterMask];
        if (saved != 0) {
            description.Put(static_cast<std::uint8_t>(kSavedAt | saved));
            description.Put(static_cast<std::uint8_t>(2 + first - i));
        }
    }
    description.End();
}

const void* PersonalityOf(const UnwindEntry& entry, const std::uint8_t* base) {
    const void* personality = nullptr;
    if (entry.personality != 0) {
        std::memcpy(&personality, base + entry.personality, sizeof personality);
    }
    return personality;
}

// The unwinder takes a description for each function, and finds what it shares by its distance.
void Register(const UnwindEntry& entry, const std::uint8_t* base) {
    auto* const description = new Description;  // NOLINT: stays as long as the function
    PutCommon(*description, PersonalityOf(entry, base));
    const std::size_t function = description->Size();
    PutFunction(*description, entry, base);
    __register_frame(description->Data() + function);
}

}  // namespace

void RegisterUnwinding(const MachOFile& file, const std::uint8_t* base) {
    const MachOSection* const section = file.FindSection("__unwind_info");
    if (section == nullptr) {
        throw std::runtime_error("the file does not say how exceptions pass through it");
    }
    for (const UnwindEntry& entry : ReadCompactUnwind(base + section->address)) {
        if (entry.encoding == 0) {
            continue;
        }
        if ((entry.encoding & kModeMask) != kModeFramePointer) {
            throw std::runtime_error("a function without a frame pointer is described");
        }
        Register(entry, base);
    }
}

}  // namespace test
