#pragma once

#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"

#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>

/// What a wrong bundle is made of: the plug-in, which it asks for all that it does not get wrong itself.
/// The plug-in is loaded on the first request and stays.
namespace test {

/// Serves the request as the plug-in does.
inline std::int32_t ServeRightly(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    static auto* const entry = [] {
        void* const module = dlopen(TEST_MODULE, RTLD_NOW | RTLD_LOCAL);
        void* const symbol = module != nullptr ? dlsym(module, kImportEntryName) : nullptr;
        if (symbol == nullptr) {
            std::abort();
        }
        return reinterpret_cast<ImportEntryFunction*>(symbol);
    }();
    return entry(selector, stdParms, param1, param2);
}

/// Serves a request that has nothing but a record.
inline std::int32_t ServeRightly(std::int32_t selector, void* record) {
    return ServeRightly(selector, nullptr, nullptr, record);
}

}  // namespace test
