// Throws an exception whose class, and the code of what(), are its own.
#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportSelectors.h"

#include <exception>

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

class OutOfTape : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "out of tape"; }
};

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* /*param1*/, void* /*param2*/) {
    if (selector == kImportAudio) {
        throw OutOfTape();
    }
    return selector == kImportInit ? kImportInitAnswer : kImportNoError;
}
