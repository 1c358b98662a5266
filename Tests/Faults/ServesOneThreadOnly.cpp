// Serves only the thread that initialised it.
#include "Tests/Support/RightImporter.h"

#include <thread>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    static std::thread::id owner;
    if (selector == kImportInit) {
        owner = std::this_thread::get_id();
    } else if (std::this_thread::get_id() != owner) {
        return kImportUnsupported;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
