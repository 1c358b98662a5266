#pragma once

#include <lineup/Api.h>
#include <lineup/BarsAndToneInfo.h>

#include <optional>
#include <string>

namespace lineup {

class Importer;

/// What a person says of a clip's sound. What is left out is as the plug-in's own default settings
/// have it, or as the identification sequence needs it.
struct ToneChoice {
    std::optional<std::string> channels = {};  ///< a ChannelLayout's name
    std::optional<double> sampleRateHz = {};   ///< kLowestSampleRateHz to kHighestSampleRateHz, whole
    std::optional<double> frequencyHz = {};    ///< from 1 on, below half the sample rate; steady tone only
    std::optional<double> levelDb = {};        ///< dBFS of the peak, -300 (silence) to 0; steady tone only
    std::optional<std::string> ident = {};     ///< an Ident's name
};

/// The settings record of the clip that was chosen, made from the plug-in's defaults: where nothing is chosen it is
/// those, byte for byte. Throws UsageError
/// for a value out of range or a combination that a clip cannot have.
[[nodiscard]] LINEUP_API BarsAndToneInfo MakeSettings(const Importer& importer, const ToneChoice& choice);

/// Throws UsageError (option "frequency") for a steady tone of half the sample rate, whose samples all lie where the
/// sine crosses zero, or of more, which is heard as another one. A settings record may hold either.
LINEUP_API void CheckTone(const BarsAndToneInfo& settings);

}  // namespace lineup
