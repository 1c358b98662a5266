#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <lineup/Error.h>
#include "Host/Services/Core/CompanionLibrary.h"

#include <dlfcn.h>
#include <map>
#include <mutex>
#include <string>
#include <system_error>

namespace lineup {
inline namespace parts {

namespace {

class Companions {
public:
    [[nodiscard]] const DynamicLibrary& Get(const char* name) const {
        const std::scoped_lock lock(mMutex);
        if (const auto found = mLoaded.find(name); found != mLoaded.end()) {
            return found->second;
        }
        const std::filesystem::path file = DynamicLibrary::Beside(name);
        std::error_code error;
        if (!std::filesystem::exists(file, error)) {
            throw Error(file.string() + " is not installed");
        }
        return mLoaded.emplace(name, file).first->second;
    }

private:
    mutable std::mutex mMutex;
    mutable std::map<std::string, DynamicLibrary> mLoaded;
};

}  // namespace

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
    static const auto* const companions = new Companions;  // never unloaded
    return companions->Get(name);
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
