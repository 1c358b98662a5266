// Clears the bytes at the end of the record of a description.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetInfo) {
        test::As<imFileInfoRec8>(param2).reserved214[25] = 0;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
