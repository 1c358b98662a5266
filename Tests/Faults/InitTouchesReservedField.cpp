// Sets the one field between the capability flags, too.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportInit) {
        test::As<imImportInfoRec>(param1).reserved40 = 1;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
