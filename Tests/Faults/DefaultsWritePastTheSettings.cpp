// Writes four bytes more than its settings have.
#include "Tests/Support/RightImporter.h"

#include <cstring>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetPrefs && test::As<imGetPrefsRec>(param2).prefs != nullptr) {
        std::memset(static_cast<char*>(test::As<imGetPrefsRec>(param2).prefs) + 32, 0, 4);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
