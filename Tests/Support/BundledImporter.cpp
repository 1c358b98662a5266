// The entry point of the built bundle, found as a host finds it.
#include "Tests/Support/BundledImporter.h"

#include "Host/Interface/Importer/ImportEntry.h"
#include "Tests/Support/Importer.h"

#include <dlfcn.h>
#include <stdexcept>

namespace test {

void* BundledModule() {
    static void* const module = dlopen(TEST_MODULE, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return module;
}

std::int32_t Request(std::int32_t selector, void* param1, void* param2, imStdParms* stdParms) {
    static auto* const entry = reinterpret_cast<ImportEntryFunction*>(dlsym(BundledModule(), kImportEntryName));
    if (entry == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return entry(selector, stdParms, param1, param2);
}

}  // namespace test
