// Plays steady tones a thousandth too loud.
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/RightImporter.h"

#include <cstring>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio && test::As<imImportAudioRec7>(param2).prefs != nullptr) {
        imImportAudioRec7 request = test::As<imImportAudioRec7>(param2);
        BarsAndToneInfo settings;
        std::memcpy(&settings, request.prefs, sizeof settings);
        settings.amplitude *= 1.001F;
        request.prefs = &settings;
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
