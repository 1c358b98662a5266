#pragma once

#include "Host/Interface/Importer/ImportEntry.h"
#include "Tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace test {

/// A copy of the product's bundle with resources that a test chooses, loaded as any host would load it:
/// with a plain dlopen. Unloaded and removed at the end.
class LoadedBundleCopy {
public:
    /// Copies the executable and the Info.plist; the copy has no resources.
    LoadedBundleCopy();
    ~LoadedBundleCopy();
    LoadedBundleCopy(const LoadedBundleCopy&) = delete;
    LoadedBundleCopy& operator=(const LoadedBundleCopy&) = delete;

    /// Writes the resource called `name`.
    void AddResource(const std::string& name, std::string_view bytes) const;

    [[nodiscard]] const std::filesystem::path& Folder() const { return mBundle; }
    [[nodiscard]] ImportEntryFunction* Entry() const { return mEntry; }

private:
    TemporaryFolder mFolder;
    std::filesystem::path mBundle;
    void* mModule = nullptr;
    ImportEntryFunction* mEntry = nullptr;
};

}  // namespace test
