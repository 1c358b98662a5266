// Draws at least one pixel of every frame.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportImage && test::As<imImportImageRecEx>(param2).width <= 0) {
        test::As<imImportImageRecEx>(param2).frame->pixels[0] = 0;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
