#pragma once

#include "Host/Lineup/Validation/Probes/GuardedRecord.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <cstring>

namespace test {

/// A host's settings buffer, at an odd address and with guards on both sides.
class GuardedSettings : public lineup::validation::GuardedRecord<BarsAndToneInfo> {
public:
    explicit GuardedSettings(const BarsAndToneInfo& settings) : GuardedRecord(settings, {.misalignment = 1}) {}

    /// The buffer holds these bytes and no others.
    [[nodiscard]] bool Holds(const BarsAndToneInfo& settings) const {
        return std::memcmp(Bytes().data(), &settings, sizeof settings) == 0;
    }

    /// No guard was written.
    [[nodiscard]] bool GuardsIntact() const { return ChangedOutside({{0, sizeof(BarsAndToneInfo)}}).empty(); }
};

}  // namespace test
