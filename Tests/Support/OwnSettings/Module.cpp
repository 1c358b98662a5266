// An importer whose settings are as long as a line-up clip's and mean something else: each byte is its own number.
#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

constexpr std::uint32_t kSettingsBytes = 32;

std::int32_t Settings(imGetPrefsRec& request) {
    request.prefsLength = kSettingsBytes;
    for (std::uint32_t i = 0; request.prefs != nullptr && i < kSettingsBytes; ++i) {
        static_cast<std::uint8_t*>(request.prefs)[i] = static_cast<std::uint8_t>(i);
    }
    return kImportNoError;
}

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* /*param1*/, void* param2) {
    switch (selector) {
        case kImportInit:
            return kImportInitAnswer;
        case kImportGetPrefs:
            return Settings(*static_cast<imGetPrefsRec*>(param2));
        default:
            return kImportUnsupported;
    }
}
