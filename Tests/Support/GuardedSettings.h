#pragma once

#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace test {

/// A host's settings buffer, at an odd address and with guards on both sides.
class GuardedSettings {
public:
    explicit GuardedSettings(const BarsAndToneInfo& settings) {
        mMemory.fill(kGuardByte);
        std::memcpy(Data(), &settings, kSettingsBytes);
    }

    [[nodiscard]] unsigned char* Data() { return mMemory.data() + kGuardBytes + 1; }

    [[nodiscard]] BarsAndToneInfo Settings() {
        BarsAndToneInfo settings;
        std::memcpy(&settings, Data(), kSettingsBytes);
        return settings;
    }

    /// The buffer holds these bytes and no others.
    [[nodiscard]] bool Holds(const BarsAndToneInfo& settings) {
        return std::memcmp(Data(), &settings, kSettingsBytes) == 0;
    }

    /// No guard was written.
    [[nodiscard]] bool GuardsIntact() {
        for (const unsigned char& byte : mMemory) {
            const bool inside = &byte >= Data() && &byte < Data() + kSettingsBytes;
            if (!inside && byte != kGuardByte) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr unsigned char kGuardByte = 0xA5;
    static constexpr std::size_t kGuardBytes = 16;
    static constexpr std::size_t kSettingsBytes = sizeof(BarsAndToneInfo);

    std::array<unsigned char, kSettingsBytes + 2 * kGuardBytes + 2> mMemory{};
};

}  // namespace test
