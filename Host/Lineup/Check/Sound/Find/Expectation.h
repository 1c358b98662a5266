#pragma once

#include <lineup/Api.h>
#include <lineup/CheckSettings.h>

#include <cstddef>
#include <optional>
#include <string>

namespace lineup::sound {

/// What was sent, as far as somebody says so: the settings of a clip, or the single options.
struct Expectation {
    std::string sequence = "auto";  ///< as CheckSettings::expect
    std::optional<double> frequencyHz;
    std::optional<double> levelDb;
    std::optional<std::size_t> channels;

    [[nodiscard]] bool TakesIdents() const { return sequence != "tone"; }
    [[nodiscard]] bool AsksForTone() const { return sequence == "tone"; }
};

[[nodiscard]] LINEUP_API Expectation ExpectationOf(const CheckSettings& settings);

}  // namespace lineup::sound
