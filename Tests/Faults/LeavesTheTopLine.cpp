// Leaves the top line of every frame undrawn.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportImage) {
        imImportImageRecEx request = test::As<imImportImageRecEx>(param2);
        request.height = static_cast<std::int16_t>(request.height - (request.height > 1 ? 1 : 0));
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
