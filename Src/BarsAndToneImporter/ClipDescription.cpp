#include "Host/Interface/Core/Numeric.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <cstring>
#include <memory>

namespace {

constexpr float kClipSeconds = 5.0F;  // every clip is described as this long

}  // namespace

std::int32_t barsGetInfo(imFileInfoRec8* info) {
    auto settings = std::make_unique<BarsAndToneInfo>();
    if (info->prefs != nullptr) {
        std::memcpy(settings.get(), info->prefs, sizeof(BarsAndToneInfo));
        settings->channelType = ChannelTypeFor(settings->numChannels);
    } else {
        settings->sampleRate = info->sampleRate;  // all else as the default clip has it: stereo
    }

    info->hasVideo = 1;
    info->hasAudio = 1;
    info->video12 = kClipVideo12;
    info->video22 = kClipVideo22;
    info->video31 = kClipVideo31;
    info->video32 = kClipVideo32;
    info->numChannels = settings->numChannels;
    info->sampleRate = settings->sampleRate;
    info->audioSampleFormat = kAudioSampleFormatFloat;
    const float durationSamples = settings->sampleRate * kClipSeconds;
    info->durationSamples = zelcore::numeric::TruncateToInt64(static_cast<double>(durationSamples));
    info->privateData = settings.release();
    return kImportNoError;
}

std::int32_t barsReleasePrivateData(void* privateData) {
    delete static_cast<BarsAndToneInfo*>(privateData);
    return kImportNoError;
}
