// Begins every peak request as if it were the first of the clip.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportPeakAudio) {
        imPeakAudioRec request = test::As<imPeakAudioRec>(param2);
        request.position = 0;
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
