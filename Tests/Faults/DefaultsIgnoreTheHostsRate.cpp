// Makes default settings at 48000 Hz for every host.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetPrefs) {
        imGetPrefsRec request = test::As<imGetPrefsRec>(param2);
        if (request.prefs != nullptr) {
            request.hostSampleRate = 48000.0F;
            return test::ServeRightly(selector, &request);
        }
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
