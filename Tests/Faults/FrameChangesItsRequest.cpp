// Marks the record of a frame request as served.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportImage) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        test::As<imImportImageRecEx>(param2).reserved64[0] ^= 0xFF;
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
