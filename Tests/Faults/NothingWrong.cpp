// Gets nothing wrong: what every other one here begins with.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    return test::ServeRightly(selector, stdParms, param1, param2);
}
