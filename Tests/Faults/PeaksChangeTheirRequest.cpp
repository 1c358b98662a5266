// Advances the position in the record of a peak request.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportPeakAudio) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        test::As<imPeakAudioRec>(param2).position += test::As<imPeakAudioRec>(param2).count;
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
