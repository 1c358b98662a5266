#pragma once

#include <lineup/services/Bundle.h>
#include "Host/Lineup/Validation/Examination/Failure.h"
#include "Host/Lineup/Validation/Examination/RawImporter.h"
#include "Host/Lineup/Validation/Probes/Random.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace lineup::validation {

/// What a check works with: the bundle, and numbers drawn from the seed. One examination a check.
class Examination {
public:
    Examination(std::filesystem::path bundleFolder, std::uint64_t seed)
        : mBundleFolder(std::move(bundleFolder)), mRandom(seed) {}

    [[nodiscard]] const std::filesystem::path& BundleFolder() const noexcept { return mBundleFolder; }

    /// The bundle's plug-in, loaded and initialised on first use. Throws what says why it cannot be.
    const RawImporter& Plugin();

    /// Numbers drawn from the seed.
    [[nodiscard]] Random& Numbers() noexcept { return mRandom; }
    std::uint64_t Below(std::uint64_t limit) { return mRandom.Below(limit); }
    std::uint64_t AnyBits() { return mRandom.AnyBits(); }

    /// Notes something that is no failure, but that the bundle's author should know of.
    void Warn(const std::string& text) { mWarnings += (mWarnings.empty() ? "" : "; ") + text; }
    [[nodiscard]] const std::string& Warnings() const noexcept { return mWarnings; }

private:
    std::filesystem::path mBundleFolder;
    Random mRandom;
    std::optional<RawImporter> mPlugin;
    std::string mWarnings;
};

}  // namespace lineup::validation
