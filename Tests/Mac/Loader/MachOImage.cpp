#include "Tests/Mac/Loader/MachOImage.h"

#include "Tests/Mac/Loader/Unwinding.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <sys/mman.h>

namespace test {

MachOImage::MachOImage(const MachOFile& file, const Resolver& resolve) : mFile(file) {
    Map();
    Rebase();
    // Symbols that are looked up on their first call are looked up at once, as all others. Weak ones are among them:
    // the list of those says only that another definition in the process would come first, and there is none.
    Bind(DecodeBinds(file.Bytes(file.binds), false), resolve);
    Bind(DecodeBinds(file.Bytes(file.lazyBinds), true), resolve);
    Protect();
    RegisterUnwinding(file, mBase);
    Initialise();
}

void MachOImage::Map() {
    std::uint64_t end = 0;
    for (const MachOSegment& segment : mFile.Segments()) {
        end = std::max(end, segment.address + segment.size);
    }
    void* const memory = mmap(nullptr, end, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::runtime_error("there is no memory for the file");
    }
    mBase = static_cast<std::uint8_t*>(memory);
    for (const MachOSegment& segment : mFile.Segments()) {
        const auto contents = mFile.Bytes(segment.contents);
        if (contents.size() > segment.size) {
            throw std::runtime_error("the segment " + segment.name + " has more bytes than room");
        }
        std::ranges::copy(contents, At(segment.address));
    }
}

std::uint64_t& MachOImage::PointerAt(const Place& place) const {
    const auto& segments = mFile.Segments();
    if (place.segment >= segments.size() || place.offset > segments[place.segment].size - sizeof(std::uint64_t)) {
        throw std::runtime_error("a pointer to be changed lies outside the file");
    }
    return *At<std::uint64_t>(segments[place.segment].address + place.offset);
}

void MachOImage::Rebase() {
    for (const Place& place : DecodeRebases(mFile.Bytes(mFile.rebases))) {
        PointerAt(place) += reinterpret_cast<std::uint64_t>(mBase);
    }
}

void MachOImage::Bind(const std::vector<test::Bind>& binds, const Resolver& resolve) {
    const auto& libraries = mFile.Libraries();
    for (const test::Bind& bind : binds) {
        const auto number = static_cast<std::size_t>(bind.library);
        if (bind.library != kInTheProcess && (bind.library < 1 || number > libraries.size())) {
            throw std::runtime_error("the symbol " + bind.symbol + " is of no library");
        }
        void* const address = resolve(bind.library == kInTheProcess ? "" : libraries[number - 1], bind.symbol);
        PointerAt(bind.place) = reinterpret_cast<std::uint64_t>(address) + static_cast<std::uint64_t>(bind.addend);
    }
}

void MachOImage::Protect() const {
    for (const MachOSegment& segment : mFile.Segments()) {
        if (mprotect(At(segment.address), segment.size, segment.protection) != 0) {
            throw std::runtime_error("the segment " + segment.name + " cannot be protected");
        }
    }
}

void MachOImage::Initialise() const {
    const MachOSection* const functions = mFile.FindSection("__mod_init_func");
    if (functions == nullptr) {
        return;
    }
    // The program's arguments, its environment and more, which nothing here looks at.
    using Initialiser = void(int, const char**, const char**, const char**, const void*);
    for (std::uint64_t offset = 0; offset < functions->size; offset += sizeof(Initialiser*)) {
        (*At<Initialiser*>(functions->address + offset))(0, nullptr, nullptr, nullptr, nullptr);
    }
}

void* MachOImage::Find(const std::string& symbol) const {
    const auto address = FindExport(mFile.Bytes(mFile.exports), symbol);
    return address ? At(*address) : nullptr;
}

}  // namespace test
