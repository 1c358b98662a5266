#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <lineup/Error.h>
#include "Host/Services/Core/CompanionLibrary.h"

#include <dlfcn.h>

namespace lineup {
inline namespace parts {

DynamicLibrary::DynamicLibrary(const std::filesystem::path& file)
    : mHandle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!mHandle) {
        throw Error("cannot load " + file.string() + ": " + dlerror());
    }
}

std::filesystem::path DynamicLibrary::Beside(const char* name) {
    static const char kHere = 0;  // an address in this library
    return zelcore::CompanionLibrary(zelcore::FileOf(&kHere), name);
}

void* DynamicLibrary::Find(const char* symbol) const noexcept {
    return dlsym(mHandle.get(), symbol);
}

void DynamicLibrary::Unload::operator()(void* handle) const noexcept {
    dlclose(handle);
}

}  // namespace parts
}  // namespace lineup
