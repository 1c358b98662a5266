// Keeps a little memory of every audio request.
#include "Tests/Support/RightImporter.h"

#include <atomic>
#include <cstdlib>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    static std::atomic<void*> last;
    if (selector == kImportAudio) {
        last = std::malloc(24);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
