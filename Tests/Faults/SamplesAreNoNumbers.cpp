// Makes a sample in the middle of a request that is no number.
#include "Tests/Support/RightImporter.h"

#include <limits>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        const imImportAudioRec7& request = test::As<imImportAudioRec7>(param2);
        if (result == kImportNoError && request.count > 4) {
            request.buffers[0][request.count / 2] = std::numeric_limits<float>::quiet_NaN();
        }
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
