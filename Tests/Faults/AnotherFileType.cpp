// Offers a file type that is not that of such clips.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetIndFormat) {
        const std::int32_t result = test::ServeRightly(selector, stdParms, param1, param2);
        if (result == kImportNoError) {
            test::As<imIndFormatRec>(param2).fileType = 0x41424344;
        }
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
