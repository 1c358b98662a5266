// Describes a clip, and answers everything else by throwing what a host does not expect: a number, the C++ library's
// word for no memory, and an exception as it gets its private data back.
#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"

#include <new>
#include <stdexcept>

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

int data = 0;

std::int32_t Describe(imFileInfoRec8& info) {
    info.numChannels = 2;
    info.privateData = &data;
    return kImportNoError;
}

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* /*param1*/, void* param2) {
    switch (selector) {
        case kImportInit:
            return kImportInitAnswer;
        case kImportGetInfo:
            return Describe(*static_cast<imFileInfoRec8*>(param2));
        case kImportReleasePrivateData:
            throw std::runtime_error("does not want it back");
        case kImportAudio:
            throw 42;
        default:
            throw std::bad_alloc();
    }
}
