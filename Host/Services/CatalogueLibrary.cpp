#include "Host/Services/CatalogueLibrary.h"

#include <dlfcn.h>

namespace zelcore {

namespace {

std::filesystem::path LibraryFile() {
    static const char kHere = 0;  // an address in this library
    Dl_info self{};
    const bool known = dladdr(&kHere, &self) != 0;
    return known ? std::filesystem::path(self.dli_fname).parent_path() / kCatalogueLibraryName : kCatalogueLibraryName;
}

ReadCatalogueFunction* Load() {
    void* const library = dlopen(LibraryFile().c_str(), RTLD_NOW | RTLD_LOCAL);
    return library == nullptr ? nullptr : reinterpret_cast<ReadCatalogueFunction*>(dlsym(library, kReadCatalogueName));
}

}  // namespace

ReadCatalogueFunction* CatalogueReader() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): a function
    static ReadCatalogueFunction* const reader = Load();
    return reader;
}

}  // namespace zelcore
