// Never frees a private copy.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportReleasePrivateData) {
        return kImportNoError;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
