#include <lineup/Validation.h>
#include "Host/Lineup/Validation/Examination/Examination.h"

namespace lineup::validation {

Finding CheckPromise(const Promise& promise, const std::filesystem::path& bundleFolder, std::uint64_t seed) {
    try {
        Examination examination(bundleFolder, seed);
        promise.check(examination);
        const std::string& warnings = examination.Warnings();
        return {.outcome = warnings.empty() ? Outcome::kPassed : Outcome::kWarning, .text = warnings};
    } catch (const Skipped& skipped) {
        return {.outcome = Outcome::kSkipped, .text = skipped.what()};
    } catch (const std::exception& error) {
        return {.outcome = Outcome::kFailed, .text = error.what()};
    } catch (...) {
        return {.outcome = Outcome::kFailed, .text = "an exception of an unknown kind was thrown"};
    }
}

}  // namespace lineup::validation
