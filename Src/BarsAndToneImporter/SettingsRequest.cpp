#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <cstring>

std::int32_t barsGetPrefs(imGetPrefsRec* request) {
    if (request->prefs == nullptr) {
        request->prefsLength = sizeof(BarsAndToneInfo);
        return kImportNoError;
    }
    if (request->useDefaults != 0) {
        BarsAndToneInfo settings;
        settings.sampleRate = request->hostSampleRate;
        std::memcpy(request->prefs, &settings, sizeof settings);
    }
    return kImportNoError;
}
