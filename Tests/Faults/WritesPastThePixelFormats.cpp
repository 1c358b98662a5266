// Writes to the record of an index past the end of the list.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetIndPixelFormat) {
        test::As<imIndPixelFormatRec>(param2).pixelFormat = 0x37785556;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
