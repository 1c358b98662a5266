#pragma once

#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace lineup::validation {

/// A plug-in's entry point as it is, for requests that no host would make. The only class of the
/// validator that calls it. What is being asked for stands on the RequestBoard meanwhile. Calls may come from
/// several threads at once.
class RawImporter {
public:
    /// Loads the executable. Throws Error when it cannot be loaded, and Failure when it does not export
    /// the entry point.
    explicit RawImporter(const std::filesystem::path& executable);
    ~RawImporter();
    RawImporter(const RawImporter&) = delete;
    RawImporter& operator=(const RawImporter&) = delete;

    /// Makes a request and returns its result code. Throws Failure, which names the request, when an exception
    /// comes out of it.
    std::int32_t Call(std::int32_t selector, void* param1, void* param2, imStdParms* stdParms = nullptr) const;

    /// How many bytes of a settings record are readable, for the texts that name requests. 0 until it is known.
    void ShowSettings(std::size_t bytes) noexcept { mSettingsBytes = bytes; }

private:
    std::optional<DynamicLibrary> mLibrary;
    ImportEntryFunction* mEntry = nullptr;
    std::size_t mSettingsBytes = 0;
};

}  // namespace lineup::validation
