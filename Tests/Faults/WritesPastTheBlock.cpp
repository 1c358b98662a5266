// Writes audio in whole blocks of four samples.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        imImportAudioRec7 request = test::As<imImportAudioRec7>(param2);
        request.count = (request.count + 3) / 4 * 4;
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
