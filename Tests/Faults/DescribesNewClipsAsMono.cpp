// Describes a clip without settings as mono.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetInfo) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        if (test::As<imFileInfoRec8>(param2).prefs == nullptr) {
            test::As<imFileInfoRec8>(param2).numChannels = 1;
        }
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
