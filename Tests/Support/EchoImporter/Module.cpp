// An importer whose sound says how it was asked for: every sample of channel c holds the position of the
// request it came with, plus c / 8. It always writes six channels. Settings: prefs as they are, or a
// stereo clip at the host's rate.
#include "Host/Interface/Core/Export.h"
#include "Host/Interface/Importer/ImportEntry.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <cstring>

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

std::int32_t Describe(imFileInfoRec8& info) {
    BarsAndToneInfo settings;
    settings.sampleRate = info.sampleRate;
    if (info.prefs != nullptr) {
        std::memcpy(&settings, info.prefs, sizeof settings);
    }
    info.numChannels = settings.numChannels;
    info.sampleRate = settings.sampleRate;
    info.privateData = new BarsAndToneInfo(settings);
    return kImportNoError;
}

std::int32_t Echo(const imImportAudioRec7& request) {
    for (std::uint32_t c = 0; c < 6; ++c) {
        for (std::uint32_t i = 0; i < request.count; ++i) {
            request.buffers[c][i] = static_cast<float>(request.position) + static_cast<float>(c) / 8;
        }
    }
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
            delete static_cast<BarsAndToneInfo*>(param2);
            return kImportNoError;
        case kImportAudio:
            return Echo(*static_cast<imImportAudioRec7*>(param2));
        default:
            return kImportUnsupported;
    }
}
