#pragma once

#include <lineup/Validation.h>
#include <lineup/services/Bundle.h>
#include "Host/Lineup/Validation/Examination/Failure.h"
#include "Host/Lineup/Validation/Examination/RawImporter.h"
#include "Host/Lineup/Validation/Probes/Random.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lineup::validation {

/// The settings of a clip as the plug-in keeps them: bytes that mean something to it alone.
using SettingsBytes = std::vector<std::uint8_t>;

/// Settings that are known of a bundle, beside those that it makes for new clips.
struct KnownSettings {
    std::string name;  ///< of the clip, as a failure names it: "the BLITS ident"
    SettingsBytes bytes;
};

/// What a check works with: the bundle, and numbers drawn from the seed. One examination a check.
class Examination {
public:
    Examination(std::filesystem::path bundleFolder, std::uint64_t seed, std::vector<KnownSettings> known = {})
        : mBundleFolder(std::move(bundleFolder)), mRandom(seed), mKnown(std::move(known)) {}

    [[nodiscard]] const std::filesystem::path& BundleFolder() const noexcept { return mBundleFolder; }

    /// The bundle's plug-in, loaded and initialised on first use. Throws what says why it cannot be.
    const RawImporter& Plugin();

    /// How long the plug-in's settings records are; 0 when it has no settings. Throws Failure when it does not say.
    std::size_t SettingsSize();

    /// Settings of clips that the bundle is known to have.
    [[nodiscard]] const std::vector<KnownSettings>& Known() const noexcept { return mKnown; }

    /// Numbers drawn from the seed.
    [[nodiscard]] Random& Numbers() noexcept { return mRandom; }
    std::uint64_t Below(std::uint64_t limit) { return mRandom.Below(limit); }
    std::uint64_t AnyBits() { return mRandom.AnyBits(); }

    /// Notes something that is not a failure, but that the bundle's author should know of.
    void Warn(const std::string& text) { mWarnings += (mWarnings.empty() ? "" : "; ") + text; }
    [[nodiscard]] const std::string& Warnings() const noexcept { return mWarnings; }

private:
    std::filesystem::path mBundleFolder;
    Random mRandom;
    std::vector<KnownSettings> mKnown;
    std::optional<RawImporter> mPlugin;
    std::optional<std::size_t> mSettingsSize;
    std::string mWarnings;
};

}  // namespace lineup::validation
