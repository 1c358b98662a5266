// Exports a function beside its entry point.
#include "Tests/Faults/RightImporter.h"

// NOLINTNEXTLINE(readability-identifier-naming): as plug-ins have them
extern "C" ZEL_API int anotherFunction() {
    return 0;
}

extern "C" ZEL_API ImportEntryFunction xImportEntry;

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    return test::ServeRightly(selector, stdParms, param1, param2);
}
