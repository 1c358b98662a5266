#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"

#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Frame/PixelFormats.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportSelectors.h"

#include <algorithm>
#include <iterator>

std::int32_t barsInit(imImportInfoRec* info) {
    info->capability28 = 1;
    info->capability32 = 1;
    info->capability36 = 1;
    info->capability44 = 1;
    return kImportInitAnswer;
}

std::int32_t barsGetIndFormat(std::intptr_t index, imIndFormatRec* format) {
    if (index != 0) {
        return kImportEndOfList;
    }
    format->fileType = kBarsAndToneFileType;
    format->formatName[0] = '\0';
    format->formatShortName[0] = '\0';
    std::fill(std::begin(format->platformExtensions), std::end(format->platformExtensions), '\0');
    return kImportNoError;
}

std::int32_t barsGetIndexPixelFormat(std::intptr_t index, imIndPixelFormatRec* format) {
    if (index != 0) {
        return kImportEndOfList;
    }
    format->pixelFormat = kPixelFormat_VUYA_32f;
    return kImportNoError;
}

extern "C" ZEL_API ImportEntryFunction xImportEntry;

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* param1, void* param2) {
    switch (selector) {
        case kImportInit:
            return barsInit(static_cast<imImportInfoRec*>(param1));
        case kImportImage:
            return barsImportImage(static_cast<imImportImageRecEx*>(param2));
        case kImportReleasePrivateData:
            return barsReleasePrivateData(param2);
        case kImportGetIndFormat:
            return barsGetIndFormat(reinterpret_cast<std::intptr_t>(param1), static_cast<imIndFormatRec*>(param2));
        case kImportAudio:
            return barsImportAudio(static_cast<imImportAudioRec7*>(param2));
        case kImportGetIndPixelFormat:
            return barsGetIndexPixelFormat(reinterpret_cast<std::intptr_t>(param1),
                                           static_cast<imIndPixelFormatRec*>(param2));
        case kImportReserved28:
            return kImportReserved28Answer;
        case kImportGetInfo:
            return barsGetInfo(static_cast<imFileInfoRec8*>(param2));
        case kImportGetPrefs:
            barsGetPrefs(static_cast<imGetPrefsRec*>(param2));
            return kImportNoError;
        case kImportPeakAudio:
            return barsGetPeakAudio(static_cast<imPeakAudioRec*>(param2));
        default:
            return kImportUnsupported;
    }
}
