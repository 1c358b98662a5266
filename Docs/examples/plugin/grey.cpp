// An importer plug-in: a grey card, and a soft square wave of 100 Hz in every channel of the clip.
#include <lineup/interface/Core/Export.h>
#include <lineup/interface/Frame/FrameServices.h>
#include <lineup/interface/Frame/PixelFormats.h>
#include <lineup/interface/Importer/ImportEntry.h>
#include <lineup/interface/Importer/ImportRecords.h>
#include <lineup/interface/Importer/ImportSelectors.h>
#include <lineup/BarsAndToneInfo.h>

#include <cstring>

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

std::int32_t Init(imImportInfoRec& info) {
    info.capability28 = info.capability32 = info.capability36 = info.capability44 = 1;
    return kImportInitAnswer;
}

std::int32_t PixelFormat(std::intptr_t index, imIndPixelFormatRec& format) {
    if (index != 0) {
        return kImportEndOfList;
    }
    format.pixelFormat = kPixelFormat_VUYA_32f;
    return kImportNoError;
}

// The settings of the clip in hand: those that the host keeps, else those of a new clip.
BarsAndToneInfo SettingsOf(const void* prefs, float hostSampleRate) {
    BarsAndToneInfo settings;
    settings.sampleRate = hostSampleRate;
    if (prefs != nullptr) {
        std::memcpy(&settings, prefs, sizeof settings);
    }
    return settings;
}

std::int32_t Describe(imFileInfoRec8& info) {
    const BarsAndToneInfo settings = SettingsOf(info.prefs, info.sampleRate);
    info.hasVideo = info.hasAudio = 1;
    info.video12 = 24;
    info.video22 = 5;
    info.video31 = 1;
    info.video32 = 2;
    info.numChannels = settings.numChannels;
    info.sampleRate = settings.sampleRate;
    info.audioSampleFormat = 6;
    info.durationSamples = static_cast<std::int64_t>(settings.sampleRate) * 5;
    info.privateData = nullptr;
    return kImportNoError;
}

std::int32_t Settings(imGetPrefsRec& request) {
    if (request.prefs == nullptr) {
        request.prefsLength = sizeof(BarsAndToneInfo);
    } else if (request.useDefaults != 0) {
        const BarsAndToneInfo settings = SettingsOf(nullptr, request.hostSampleRate);
        std::memcpy(request.prefs, &settings, sizeof settings);
    }
    return kImportNoError;
}

std::int32_t Draw(const imImportImageRecEx& request) {
    const bool isFloat = request.pixelFormat == kPixelFormat_VUYA_32f;
    if (!isFloat && request.pixelFormat != kPixelFormat_VUYA_8u) {
        return kImportUnsupported;
    }
    constexpr float kGrey[] = {0, 0, 0.5F, 1};  // V, U, Y, A
    IR_FillWithColor(request.frame->pixels, vexelGetRowbytes(request.frame), request.width, request.height,
                     isFloat ? kFillFormat_VUYA_32f : kFillFormat_VUYA_8u, kGrey, kFillFormat_VUYA_32f);
    return kImportNoError;
}

std::int32_t Play(const imImportAudioRec7& request) {
    if (request.prefs == nullptr) {
        return kImportNoSettings;
    }
    const BarsAndToneInfo settings = SettingsOf(request.prefs, 0);
    const bool hasLayout = settings.numChannels == 1 || settings.numChannels == 2 || settings.numChannels == 6;
    const bool canPlay = hasLayout && settings.sampleRate >= 200 && settings.sampleRate < 1e6F;
    const auto cycle = static_cast<std::int64_t>(canPlay ? settings.sampleRate / 100 : 0);
    for (std::uint32_t i = 0; canPlay && i < request.count; ++i) {
        const float sample = (request.position + i) % cycle < cycle / 2 ? 0.1F : -0.1F;
        for (std::uint32_t c = 0; c < settings.numChannels; ++c) {
            request.buffers[c][i] = sample;
        }
    }
    return kImportNoError;
}

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* param1, void* param2) {
    switch (selector) {
        case kImportInit:
            return Init(*static_cast<imImportInfoRec*>(param1));
        case kImportGetIndPixelFormat:
            return PixelFormat(reinterpret_cast<std::intptr_t>(param1), *static_cast<imIndPixelFormatRec*>(param2));
        case kImportReserved28:
            return kImportReserved28Answer;
        case kImportGetInfo:
            return Describe(*static_cast<imFileInfoRec8*>(param2));
        case kImportGetPrefs:
            return Settings(*static_cast<imGetPrefsRec*>(param2));
        case kImportImage:
            return Draw(*static_cast<const imImportImageRecEx*>(param2));
        case kImportAudio:
            return Play(*static_cast<const imImportAudioRec7*>(param2));
        default:
            return kImportUnsupported;
    }
}
