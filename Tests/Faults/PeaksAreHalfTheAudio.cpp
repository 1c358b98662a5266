// Draws peaks at half the level of the audio.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportPeakAudio) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        const imPeakAudioRec& request = test::As<imPeakAudioRec>(param2);
        for (std::int32_t i = 0; result == kImportNoError && i < request.count; ++i) {
            request.maxima[0][i] /= 2;
            request.minima[0][i] /= 2;
        }
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
