#include "Tests/Mac/Loader/MacSystem.h"

#include <lineup/services/Bundle.h>
#include "Host/Interface/Platform/Atomic.h"
#include "Host/Interface/Platform/PatternFill.h"
#include "Host/Services/Bundles/LoadedBundles.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <map>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace test {

namespace {

// --- what only a Mac has ----------------------------------------------------------------------------

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the bundle that the process has loaded
__CFBundle* gBundle = nullptr;

// The object that the compiler lays out for a constant string.
struct ConstantString {
    const void* kind;
    std::int64_t flags;
    const char* text;
    std::int64_t length;
};
std::array<std::uint64_t, 4> kindOfConstantStrings{};  // NOLINT: its address tells what an object is

__CFBundle* BundleWithIdentifier(const ConstantString* identifier) {
    const std::string_view text(identifier->text, static_cast<std::size_t>(identifier->length));
    const bool known = identifier->kind == kindOfConstantStrings.data() && gBundle->identifier == text;
    return known ? gBundle : nullptr;
}

void FillWithZeros(void* destination, std::size_t bytes) {
    std::memset(destination, 0, bytes);
}

[[noreturn]] void StackIsBroken() {
    std::abort();
}

[[noreturn]] void BindOnFirstCall() {
    std::abort();  // everything is bound before
}

std::uint64_t stackGuard = 0x00AF'FE00'0D0A'FF5CU;  // NOLINT(*-non-const-global-variables)

template <class T>
void* Address(T* thing) {
    return reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(thing));
}

// --- the libraries ----------------------------------------------------------------------------------

constexpr const char* kAnywhere = nullptr;  // in the place of a library's file: the process

// A library of a Mac: what has its place here, and what is kept here of it.
struct Library {
    std::vector<const char*> files;
    std::map<std::string, void*, std::less<>> symbols;
};

const std::map<std::string, Library, std::less<>>& Libraries() {
    static const std::map<std::string, Library, std::less<>> libraries = {
        {"", {.files = {kAnywhere}, .symbols = {}}},
        {"/usr/lib/libc++.1.dylib", {.files = {"libc++.so.1", "libc++abi.so.1"}, .symbols = {}}},
        {"/usr/lib/libSystem.B.dylib",
         {.files = {"libc.so.6", "libm.so.6", "libunwind.so.1"},
          .symbols = {{"_OSAtomicAdd32Barrier", Address(&OSAtomicAdd32Barrier)},
                      {"_memset_pattern16", Address(&memset_pattern16)},
                      {"___bzero", Address(&FillWithZeros)},
                      {"___stack_chk_fail", Address(&StackIsBroken)},
                      {"___stack_chk_guard", &stackGuard},
                      {"dyld_stub_binder", Address(&BindOnFirstCall)}}}},
        {"/System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation",
         {.files = {},
          .symbols = {{"_CFBundleGetBundleWithIdentifier", Address(&BundleWithIdentifier)},
                      {"___CFConstantStringClassReference", kindOfConstantStrings.data()}}}},
    };
    return libraries;
}

// A symbol of a library that the program is linked with; null when it has none of that name.
void* FindIn(const char* file, const char* name) {
    void* const library = file == kAnywhere ? RTLD_DEFAULT : dlopen(file, RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr && file != kAnywhere) {
        throw std::runtime_error(std::string("this library is not loaded: ") + file);
    }
    return dlsym(library, name);
}

void* Resolve(const std::string& library, const std::string& symbol) {
    const auto known = Libraries().find(library);
    if (known == Libraries().end()) {
        throw std::runtime_error("this system has nothing in the place of " + library);
    }
    const auto own = known->second.symbols.find(symbol);
    if (own != known->second.symbols.end()) {
        return own->second;
    }
    for (const char* const file : known->second.files) {
        // On macOS names of C have an underscore in front.
        void* const address = symbol.starts_with('_') ? FindIn(file, symbol.c_str() + 1) : nullptr;
        if (address != nullptr) {
            return address;
        }
    }
    throw std::runtime_error("there is no symbol " + symbol + " in " + (library.empty() ? "the host" : library));
}

}  // namespace

MachOImage::Resolver MakeMacSystem(const std::filesystem::path& bundle) {
    static __CFBundle loaded{bundle, zelcore::Bundle(bundle).Identifier()};
    gBundle = &loaded;
    return Resolve;
}

}  // namespace test
