#pragma once

#include "Tests/Support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace test {

/// A copy of the bundle under test in `folder`, in place of the one made there before, with every `before` in its
/// dialogs' layouts as `after`. Returns where it is.
inline std::filesystem::path BundleWithForms(const std::filesystem::path& folder, const std::string& before,
                                             const std::string& after) {
    const std::filesystem::path bundle = folder / "Other.bundle";
    std::filesystem::remove_all(bundle);
    std::filesystem::copy(TEST_BUNDLE, bundle, std::filesystem::copy_options::recursive);
    for (const char* const name : {"ToneSettingsDialog.tarn", "ToneSettingsWithIdentifiersDialog.tarn"}) {
        const std::filesystem::path file = bundle / "Contents" / "Resources" / name;
        std::ifstream stream(file);
        std::string text{std::istreambuf_iterator<char>(stream), {}};
        for (std::size_t at = 0; (at = text.find(before, at)) != std::string::npos; at += after.size()) {
            text.replace(at, before.size(), after);
        }
        WriteFile(file, text);
    }
    return bundle;
}

}  // namespace test
