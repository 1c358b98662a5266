#pragma once

#include <lineup/Error.h>
#include "Host/Lineup/Export/MediaEntry.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <string>

namespace lineup {
inline namespace parts {

/// What the library of media formats offers under `name`; it is loaded when first asked for something.
template <class Function>
Function& FromMediaLibrary(const char* name) {
    // Never unloaded: what it made may outlive every stream.
    static const auto* const library = new DynamicLibrary(DynamicLibrary::Beside(kMediaLibraryName));
    void* const symbol = library->Find(name);
    if (symbol == nullptr) {
        throw Error(std::string("cannot send: ") + kMediaLibraryName + " has no " + name);
    }
    return *reinterpret_cast<Function*>(symbol);
}

}  // namespace parts
}  // namespace lineup
