// Counts audio requests in the version of the settings.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio && test::As<imImportAudioRec7>(param2).prefs != nullptr) {
        ++*static_cast<unsigned char*>(test::As<imImportAudioRec7>(param2).prefs);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
