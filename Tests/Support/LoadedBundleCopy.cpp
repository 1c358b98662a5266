#include "Tests/Support/LoadedBundleCopy.h"

#include <dlfcn.h>
#include <stdexcept>

namespace fs = std::filesystem;

namespace test {

LoadedBundleCopy::LoadedBundleCopy() : mBundle(mFolder.Path() / "Copy.bundle") {
    const fs::path module = TEST_MODULE;
    const fs::path copy = mBundle / "Contents" / module.parent_path().filename() / module.filename();
    fs::create_directories(copy.parent_path());
    fs::copy_file(module, copy);
    fs::copy_file(fs::path(TEST_BUNDLE) / "Contents" / "Info.plist", mBundle / "Contents" / "Info.plist");

    mModule = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (mModule == nullptr) {
        throw std::runtime_error(std::string("cannot load the bundle's copy: ") + dlerror());
    }
    mEntry = reinterpret_cast<ImportEntryFunction*>(dlsym(mModule, kImportEntryName));
}

LoadedBundleCopy::~LoadedBundleCopy() {
    dlclose(mModule);
}

void LoadedBundleCopy::AddResource(const std::string& name, std::string_view bytes) const {
    WriteFile(mBundle / "Contents" / "Resources" / name, bytes);
}

}  // namespace test
