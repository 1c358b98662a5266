// Writes to a channel that the clip does not have.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        const imImportAudioRec7& request = test::As<imImportAudioRec7>(param2);
        if (request.count > 0) {
            request.buffers[7][0] = 0.0F;
        }
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
