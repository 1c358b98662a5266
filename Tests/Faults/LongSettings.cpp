// Has settings of 33 bytes.
#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"

extern "C" ZEL_API ImportEntryFunction xImportEntry;

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* /*param1*/, void* param2) {
    if (selector == kImportGetPrefs) {
        static_cast<imGetPrefsRec*>(param2)->prefsLength = 33;
    }
    return selector == kImportInit ? kImportInitAnswer : kImportNoError;
}
