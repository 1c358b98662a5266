// Draws 8-bit V,U,Y,A where it does not know the pixel format.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportImage && test::As<imImportImageRecEx>(param2).pixelFormat != 0x37785556) {
        imImportImageRecEx request = test::As<imImportImageRecEx>(param2);
        request.pixelFormat = 0x78797576;
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
