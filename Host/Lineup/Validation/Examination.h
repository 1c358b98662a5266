#pragma once

#include <lineup/services/Bundle.h>
#include "Host/Lineup/Validation/RawImporter.h"

#include <fmt/format.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

namespace lineup::validation {

/// A promise that the bundle does not keep; the text says what was found, and where.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// There is nothing to check; the text says why.
class Skipped : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws Failure with the text.
template <class... Args>
[[noreturn]] void Fail(fmt::format_string<Args...> text, Args&&... args) {
    throw Failure(fmt::format(text, std::forward<Args>(args)...));
}

/// The same unless `kept`. The arguments are made in any case: a loop over samples that has to make
/// them asks first, and fails then.
template <class... Args>
void Require(bool kept, fmt::format_string<Args...> text, Args&&... args) {
    if (!kept) {
        Fail(text, std::forward<Args>(args)...);
    }
}

/// What a check works with: the bundle, and numbers drawn from the seed. One examination a check.
class Examination {
public:
    Examination(std::filesystem::path bundleFolder, std::uint64_t seed)
        : mBundleFolder(std::move(bundleFolder)), mRandom(seed) {}

    [[nodiscard]] const std::filesystem::path& BundleFolder() const noexcept { return mBundleFolder; }

    /// The bundle's plug-in, loaded and initialised on first use. Throws what says why it cannot be.
    const RawImporter& Plugin();

    /// A number of [0, limit), the same from the same seed with every standard library.
    std::uint64_t Below(std::uint64_t limit) { return mRandom() % limit; }

    /// All 64 bits.
    std::uint64_t AnyBits() { return mRandom(); }

    /// Notes something that is no failure, but that the bundle's author should know of.
    void Warn(const std::string& text) { mWarnings += (mWarnings.empty() ? "" : "; ") + text; }
    [[nodiscard]] const std::string& Warnings() const noexcept { return mWarnings; }

private:
    std::filesystem::path mBundleFolder;
    std::mt19937_64 mRandom;
    std::optional<RawImporter> mPlugin;
    std::string mWarnings;
};

}  // namespace lineup::validation
