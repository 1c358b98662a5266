// Initialises, and then serves no request at all.
#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportSelectors.h"

extern "C" ZEL_API ImportEntryFunction xImportEntry;

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* /*param1*/, void* /*param2*/) {
    return selector == kImportInit ? kImportInitAnswer : kImportUnsupported;
}
