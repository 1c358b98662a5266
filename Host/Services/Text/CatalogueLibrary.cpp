#include "Host/Services/Text/CatalogueLibrary.h"

#include "Host/Services/Core/CompanionLibrary.h"

#include <dlfcn.h>

namespace zelcore {

namespace {

const char kHere = 0;  // an address in this library

ReadCatalogueFunction* Load() {
    void* const library =
        dlopen(CompanionLibrary(FileOf(&kHere), kCatalogueLibraryName).c_str(), RTLD_NOW | RTLD_LOCAL);
    return library == nullptr ? nullptr : reinterpret_cast<ReadCatalogueFunction*>(dlsym(library, kReadCatalogueName));
}

}  // namespace

ReadCatalogueFunction* CatalogueReader() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): a function
    static ReadCatalogueFunction* const reader = Load();
    return reader;
}

}  // namespace zelcore
