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
    std::optional<double> frequencyHz = {};    ///< 1 to half the sample rate; steady tone only
    std::optional<double> levelDb = {};        ///< dBFS of the peak, -300 (silence) to 0; steady tone only
    std::optional<std::string> ident = {};     ///< an Ident's name
};

/// The settings record of the clip that was chosen, made from the plug-in's defaults: where nothing is chosen it is
/// those, byte for byte. Throws UsageError
/// for a value out of range or a combination that a clip cannot have.
[[nodiscard]] LINEUP_API BarsAndToneInfo MakeSettings(const Importer& importer, const ToneChoice& choice);

}  // namespace lineup
