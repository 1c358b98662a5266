// Refuses a selector that is not in use, and writes to its record all the same.
#include "Tests/Support/RightImporter.h"

std::int32_t xImportEntry(std::int32_t selector, imStdParms* stdParms, void* param1, void* param2) {
    if (selector == 26) {
        test::As<std::uint8_t>(param2) = 0x5A;
    }
    return test::ServeRightly(selector, stdParms, param1, param2);
}
