// Describes every clip at 48000 Hz.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetInfo) {
        const std::int32_t result = test::ServeRightly(selector, param2);
        test::As<imFileInfoRec8>(param2).sampleRate = 48000.0F;
        return result;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
