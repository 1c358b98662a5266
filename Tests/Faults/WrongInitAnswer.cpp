// Answers the Init request with 0, as if it were any other request.
#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportSelectors.h"

extern "C" ZEL_API ImportEntryFunction xImportEntry;

std::int32_t xImportEntry(std::int32_t /*selector*/, imStdParms* /*stdParms*/, void* /*param1*/, void* /*param2*/) {
    return kImportNoError;
}
