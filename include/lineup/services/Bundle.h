#pragma once

#include <lineup/interface/Core/Export.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace zelcore {

/// A bundle that cannot be used; the text says which one and why.
class ZEL_API BundleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A loadable bundle on disk: a folder with Contents/Info.plist, Contents/Resources and one
/// executable a platform.
class ZEL_API Bundle {
public:
    /// Reads the bundle's Info.plist. Throws BundleError when there is no bundle at `folder`, or its
    /// Info.plist cannot be read, is larger than 1 MiB or names no executable or no identifier.
    explicit Bundle(const std::filesystem::path& folder);

    [[nodiscard]] const std::filesystem::path& Folder() const noexcept { return mFolder; }

    /// CFBundleIdentifier.
    [[nodiscard]] const std::string& Identifier() const noexcept { return mIdentifier; }

    /// CFBundleShortVersionString; empty when there is none.
    [[nodiscard]] const std::string& Version() const noexcept { return mVersion; }

    /// The executable for the platform this code was built for, such as
    /// Contents/x86_64-linux/NAME.so. Throws BundleError when the bundle has none.
    [[nodiscard]] std::filesystem::path Executable() const;

private:
    std::filesystem::path mFolder;
    std::string mIdentifier;
    std::string mVersion;
    std::string mExecutableName;
};

}  // namespace zelcore
