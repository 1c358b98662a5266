// Counts the samples that are left in the record of the request.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        test::As<imImportAudioRec7>(param2).count = 0;
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
