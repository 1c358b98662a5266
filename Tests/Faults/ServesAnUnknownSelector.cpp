// Serves a selector that is not in use.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == 26) {
        return kImportNoError;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
