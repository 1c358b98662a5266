// Serves audio requests that carry no settings, with silence.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        const imImportAudioRec7& request = test::As<imImportAudioRec7>(param2);
        if (request.prefs == nullptr && request.privateData == nullptr) {
            return kImportNoError;
        }
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
