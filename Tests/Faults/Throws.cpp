// Lets an exception out of an audio request.
#include "Tests/Support/RightImporter.h"

#include <stdexcept>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        throw std::runtime_error("out of tape");
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
