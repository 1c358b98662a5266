// Keeps a little memory of every audio request.
#include "Tests/Support/RightImporter.h"

#include <atomic>
#include <cstdlib>

// Others could read it, so no compiler may leave the memory out.
std::atomic<void*> lastLeaked;

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio) {
        lastLeaked = std::malloc(24);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
