#pragma once

#include <lineup/Api.h>
#include <lineup/CheckSettings.h>
#include "Host/Lineup/Check/Sound/Decide/SoundFindings.h"
#include "Host/Lineup/Check/SoundSource.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace lineup {

class Importer;

inline namespace parts {

/// Called now and then with the samples read so far; false stops.
using SoundProgress = std::function<bool(std::int64_t samples)>;

/// Reads `source` to its end, once and in a constant amount of memory, and says what the path did to the line-up in it:
/// what was sent is what the plug-in gives for the same clip. Where settings.fromSeconds is set, samples before it
/// are read and passed over. Throws UsageError as ValidateCheckSettings does; Cancelled when `progress` returned
/// false; what the source or the plug-in throws.
[[nodiscard]] LINEUP_API SoundFindings CheckSound(SoundSource& source, const std::shared_ptr<const Importer>& importer,
                                                  const CheckSettings& settings, const SoundProgress& progress = {});

}  // namespace parts

}  // namespace lineup
