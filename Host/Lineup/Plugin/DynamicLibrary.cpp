#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <lineup/Error.h>
#include "Host/Services/Core/CompanionLibrary.h"

#include <dlfcn.h>
#include <map>
#include <mutex>
#include <string>

namespace lineup {
inline namespace parts {

DynamicLibrary::DynamicLibrary(const std::filesystem::path& file)
    : mFile(file), mHandle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (!mHandle) {
        throw Error("cannot load " + file.string() + ": " + dlerror());
    }
}

std::filesystem::path DynamicLibrary::Beside(const char* name) {
    static const char kHere = 0;  // an address in this library
    return zelcore::CompanionLibrary(zelcore::FileOf(&kHere), name);
}

const DynamicLibrary& DynamicLibrary::Companion(const char* name) {
    static std::mutex mutex;
    static auto* const libraries = new std::map<std::string, DynamicLibrary>;  // never unloaded
    const std::scoped_lock lock(mutex);
    const auto found = libraries->find(name);
    return found != libraries->end() ? found->second : libraries->emplace(name, Beside(name)).first->second;
}

void* DynamicLibrary::Find(const char* symbol) const noexcept {
    return dlsym(mHandle.get(), symbol);
}

void* DynamicLibrary::Require(const char* symbol, const char* cannot) const {
    void* const found = Find(symbol);
    if (found == nullptr) {
        throw Error(std::string(cannot) + ": " + mFile.filename().string() + " has no " + symbol);
    }
    return found;
}

void DynamicLibrary::Unload::operator()(void* handle) const noexcept {
    dlclose(handle);
}

}  // namespace parts
}  // namespace lineup
