#pragma once

#include "Host/Lineup/Export/MediaEntry.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

namespace lineup {
inline namespace parts {

/// What the library of media formats offers under `name`; it is loaded when first asked for something.
template <class Function>
Function& FromMediaLibrary(const char* name) {
    return DynamicLibrary::Companion(kMediaLibraryName).Function<Function>(name, "cannot send");
}

}  // namespace parts
}  // namespace lineup
