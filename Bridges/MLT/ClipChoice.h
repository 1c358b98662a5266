#pragma once

#include <lineup/ExportSettings.h>
#include <lineup/ToneChoice.h>

#include <array>
#include <framework/mlt.h>
#include <functional>
#include <string>
#include <string_view>
#include <tuple>

namespace bridge {

/// Says one sentence to the person at the log.
using Complain = std::function<void(const std::string&)>;

/// What a producer's properties ask for.
struct ClipChoice {
    lineup::ToneChoice tone;  ///< without a sample rate: that is the consumer's
    lineup::Card card = lineup::Card::Auto;
    bool inMatrixOfProfile = true;  ///< instead of BT.601, the card's own
    int depthBits = 16;             ///< of pictures that are asked for in 16 bits: 10, 12 or 16
};

/// A producer's properties as text, in the order of the table; empty where one is not set.
using PropertyTexts = std::array<std::string, 7>;

/// The names of the properties, in the same order.
[[nodiscard]] std::array<std::string_view, std::tuple_size_v<PropertyTexts>> PropertyNames();

/// Brings `texts` up to date; whether one of them has changed.
bool UpdateTexts(mlt_properties properties, PropertyTexts& texts);

/// The choice that `texts` name. An invalid value is replaced by the nearest valid one, with
/// a sentence that names the property and its range.
[[nodiscard]] ClipChoice MakeChoice(const PropertyTexts& texts, const Complain& complain);

/// The settings record of the chosen clip at `rateHz`. A frequency of half the rate or more is brought
/// down below it, with a sentence.
[[nodiscard]] lineup::BarsAndToneInfo MakeSettings(const lineup::Importer& importer, const ClipChoice& choice,
                                                   int rateHz, const Complain& complain);

}  // namespace bridge
