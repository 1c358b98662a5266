// Plays every third request at a phase that the one before it left.
#include "Tests/Support/RightImporter.h"

#include <atomic>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    static std::atomic<int> count{0};
    if (selector == kImportAudio && ++count % 3 == 0) {
        imImportAudioRec7 request = test::As<imImportAudioRec7>(param2);
        ++request.position;
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
