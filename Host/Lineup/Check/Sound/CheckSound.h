#pragma once

#include <lineup/Api.h>
#include <lineup/CheckSettings.h>
#include "Host/Lineup/Check/Sound/Decide/SoundFindings.h"
#include "Host/Lineup/Check/SoundSource.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lineup {

class Importer;

namespace sound {
struct Reference;
}

inline namespace parts {

/// Called now and then with the samples read so far; false stops.
using SoundProgress = std::function<bool(std::int64_t samples)>;

/// Checks one source after the other: what the plug-in gives for what may have been sent is asked once.
class LINEUP_API SoundChecker {
public:
    /// Throws what the plug-in throws.
    explicit SoundChecker(std::shared_ptr<const Importer> importer);
    ~SoundChecker();
    SoundChecker(const SoundChecker&) = delete;
    SoundChecker& operator=(const SoundChecker&) = delete;

    /// As CheckSound. The source's first sample stands at second `origin` of what all places are counted in.
    [[nodiscard]] SoundFindings Check(SoundSource& source, const CheckSettings& settings, double origin = 0,
                                      const SoundProgress& progress = {}) const;

private:
    std::shared_ptr<const Importer> mImporter;
    std::vector<sound::Reference> mReferences;
};

/// Reads `source` to its end, once and in a constant amount of memory, and says what the path did to the line-up in it:
/// what was sent is what the plug-in gives for the same clip. Where settings.fromSeconds is set, samples before it
/// are read and passed over. Throws UsageError as ValidateCheckSettings does; Cancelled when `progress` returned
/// false; what the source or the plug-in throws.
[[nodiscard]] LINEUP_API SoundFindings CheckSound(SoundSource& source, const std::shared_ptr<const Importer>& importer,
                                                  const CheckSettings& settings, const SoundProgress& progress = {});

}  // namespace parts

}  // namespace lineup
