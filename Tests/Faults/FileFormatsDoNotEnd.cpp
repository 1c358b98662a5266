// Lists its one file format again and again.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == kImportGetIndFormat) {
        return test::ServeRightly(selector, stdParms, nullptr, param2);
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
