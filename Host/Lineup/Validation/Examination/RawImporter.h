#pragma once

#include <lineup/DynamicLibrary.h>
#include "Host/Interface/Importer/ImportEntry.h"

#include <cstdint>
#include <filesystem>

namespace lineup::validation {

/// A plug-in's entry point as it is, for requests that no host would make. The only class of the
/// validator that calls it. Calls may come from several threads at once.
class RawImporter {
public:
    /// Loads the executable. Throws Error when it cannot be loaded, and Failure when it does not export
    /// the entry point.
    explicit RawImporter(const std::filesystem::path& executable);

    /// Makes a request and returns its result code. Throws Failure when an exception comes out of it.
    std::int32_t Call(std::int32_t selector, void* param1, void* param2, imStdParms* stdParms = nullptr) const;

private:
    DynamicLibrary mLibrary;
    ImportEntryFunction* mEntry;
};

}  // namespace lineup::validation
