// Refuses to describe clips that no dialog makes.
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/RightImporter.h"

#include <cstring>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetInfo && test::As<imFileInfoRec8>(param2).prefs != nullptr) {
        BarsAndToneInfo settings;
        std::memcpy(&settings, test::As<imFileInfoRec8>(param2).prefs, sizeof settings);
        const bool even = settings.sampleRate >= 8000.0F && settings.numChannels <= 6;
        if (!even) {
            return kImportUnsupported;
        }
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
