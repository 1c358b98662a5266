// Draws frames a column wider than they are.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportImage && test::As<imImportImageRecEx>(param2).width < 32767) {
        imImportImageRecEx request = test::As<imImportImageRecEx>(param2);
        request.width = static_cast<std::int16_t>(request.width + 1);
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
