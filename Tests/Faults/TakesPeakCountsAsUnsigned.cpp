// Serves a peak request for fewer than no values.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportPeakAudio && test::As<imPeakAudioRec>(param2).count < 0) {
        test::As<imPeakAudioRec>(param2).maxima[0][0] = 0.0F;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
