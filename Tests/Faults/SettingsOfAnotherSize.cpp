// Says that its settings are 28 bytes.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetPrefs && test::As<imGetPrefsRec>(param2).prefs == nullptr) {
        test::As<imGetPrefsRec>(param2).prefsLength = 28;
        return kImportNoError;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
