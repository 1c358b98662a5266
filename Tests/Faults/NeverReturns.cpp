// Never comes back from an audio request.
#include "Tests/Support/RightImporter.h"

#include <atomic>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    static std::atomic<bool> forever{true};
    while (selector == kImportAudio && forever) {
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
