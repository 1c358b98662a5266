// Knows sample rates in whole kilohertz only.
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Support/RightImporter.h"

#include <cmath>
#include <cstring>

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportAudio && test::As<imImportAudioRec7>(param2).prefs != nullptr) {
        imImportAudioRec7 request = test::As<imImportAudioRec7>(param2);
        BarsAndToneInfo settings;
        std::memcpy(&settings, request.prefs, sizeof settings);
        settings.sampleRate = std::round(settings.sampleRate / 1000.0F) * 1000.0F;
        request.prefs = &settings;
        return test::ServeRightly(selector, &request);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
