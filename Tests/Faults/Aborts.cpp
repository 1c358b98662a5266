// Ends the process when it is asked for audio.
#include "Tests/Support/RightImporter.h"

#include <cstdlib>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        std::abort();
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
