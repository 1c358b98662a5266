#include <lineup/Validation.h>
#include "Host/Lineup/Validation/Clip/Sounds.h"
#include "Host/Lineup/Validation/Examination/Examination.h"

namespace lineup::validation {

Finding CheckPromise(const Promise& promise, const Subject& subject, std::uint64_t seed) {
    try {
        Examination examination(subject.bundleFolder, seed,
                                subject.isBarsAndTone ? KnownClips() : std::vector<KnownSettings>());
        promise.check(examination);
        const std::string& warnings = examination.Warnings();
        return {.outcome = warnings.empty() ? Outcome::Passed : Outcome::Warning, .text = warnings};
    } catch (const Skipped& skipped) {
        return {.outcome = Outcome::Skipped, .text = skipped.what()};
    } catch (const std::exception& error) {
        return {.outcome = Outcome::Failed, .text = error.what()};
    } catch (...) {
        return {.outcome = Outcome::Failed, .text = "an exception of an unknown kind was thrown"};
    }
}

}  // namespace lineup::validation
