// Plays what lies before the beginning of the clip as its beginning.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio && test::As<imImportAudioRec7>(param2).position < 0) {
        imImportAudioRec7 request = test::As<imImportAudioRec7>(param2);
        request.position = 0;
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
