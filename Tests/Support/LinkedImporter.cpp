// The entry point of the plug-in's library, linked into the program.
#include "Host/Interface/Importer/ImportEntry.h"
#include "Tests/Support/Importer.h"

extern "C" ImportEntryFunction xImportEntry;

std::int32_t test::Request(std::int32_t selector, void* param1, void* param2, imStdParms* stdParms) {
    return xImportEntry(selector, stdParms, param1, param2);
}
