// An importer plug-in: a grey card, and a soft square wave of 100 Hz in every channel of the clip.
#include <lineup/BarsAndToneInfo.h>
#include <lineup/interface/Core/Export.h>
#include <lineup/interface/Frame/FrameServices.h>
#include <lineup/interface/Frame/PixelFormats.h>
#include <lineup/interface/Importer/ImportEntry.h>
#include <lineup/interface/Importer/ImportRecords.h>
#include <lineup/interface/Importer/ImportSelectors.h>

#include <cstring>

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

using lineup::BarsAndToneInfo;

constexpr float kLevel = 0.1F;

std::int32_t Init(imImportInfoRec& info) {
    info.capability28 = info.capability32 = info.capability36 = info.capability44 = 1;
    return kImportInitAnswer;
}

std::int32_t FileFormat(std::intptr_t index, imIndFormatRec& format) {
    if (index != 0) {
        return kImportEndOfList;
    }
    format.fileType = 0x47524559;  // "GREY"
    std::strcpy(format.formatName, "Grey card");
    std::strcpy(format.formatShortName, "Grey");
    std::memset(format.platformExtensions, 0, sizeof format.platformExtensions);
    return kImportNoError;
}

std::int32_t PixelFormat(std::intptr_t index, imIndPixelFormatRec& format) {
    if (index != 0) {
        return kImportEndOfList;
    }
    format.pixelFormat = kPixelFormat_VUYA_32f;
    return kImportNoError;
}

// A plug-in's settings are its own. These are the ones of Bars and Tone, so that the options of lineup render choose
// the layout and the sample rate. What the host has kept may be anything: settings that make no clip are refused.
bool ReadSettings(const void* prefs, BarsAndToneInfo& settings) {
    std::memcpy(&settings, prefs, sizeof settings);
    const bool hasLayout = settings.numChannels == 1 || settings.numChannels == 2 || settings.numChannels == 6;
    return hasLayout && settings.sampleRate >= 200 && settings.sampleRate <= 1e6F;
}

BarsAndToneInfo NewClip(float hostSampleRate) {
    BarsAndToneInfo settings;
    settings.sampleRate = hostSampleRate;
    return settings;
}

std::int32_t Settings(imGetPrefsRec& request) {
    if (request.prefs == nullptr) {
        request.prefsLength = sizeof(BarsAndToneInfo);
    } else if (request.useDefaults != 0) {
        const BarsAndToneInfo settings = NewClip(request.hostSampleRate);
        std::memcpy(request.prefs, &settings, sizeof settings);
    }
    return kImportNoError;
}

std::int32_t Describe(imFileInfoRec8& info) {
    BarsAndToneInfo settings = NewClip(info.sampleRate);
    if (info.prefs != nullptr && !ReadSettings(info.prefs, settings)) {
        return kImportUnsupported;
    }
    info.hasVideo = info.hasAudio = 1;
    info.video12 = kClipVideo12;
    info.video22 = kClipVideo22;
    info.video31 = kClipVideo31;
    info.video32 = kClipVideo32;
    info.numChannels = settings.numChannels;
    info.sampleRate = settings.sampleRate;
    info.audioSampleFormat = kAudioSampleFormatFloat;
    info.durationSamples = static_cast<std::int64_t>(settings.sampleRate) * 5;
    info.privateData = new BarsAndToneInfo(settings);
    return kImportNoError;
}

std::int32_t Release(void* privateData) {
    delete static_cast<BarsAndToneInfo*>(privateData);
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

// The settings of a request, which go before the private copy.
template <class Request>
std::int32_t FindSettings(const Request& request, BarsAndToneInfo& settings) {
    const void* const from = request.prefs != nullptr ? request.prefs : request.privateData;
    if (from == nullptr) {
        return kImportNoSettings;
    }
    return ReadSettings(from, settings) ? kImportNoError : kImportUnsupported;
}

std::int32_t Play(const imImportAudioRec7& request) {
    BarsAndToneInfo settings;
    if (const std::int32_t result = FindSettings(request, settings); result != kImportNoError) {
        return result;
    }
    const auto cycle = static_cast<std::int64_t>(settings.sampleRate / 100);
    const std::int64_t first = (request.position % cycle + cycle) % cycle;  // before the beginning, too
    for (std::uint32_t i = 0; i < request.count; ++i) {
        const float sample = (first + i) % cycle < cycle / 2 ? kLevel : -kLevel;
        for (std::uint32_t c = 0; c < settings.numChannels; ++c) {
            request.buffers[c][i] = sample;
        }
    }
    return kImportNoError;
}

std::int32_t Overview(const imPeakAudioRec& request) {
    BarsAndToneInfo settings;
    if (const std::int32_t result = FindSettings(request, settings); result != kImportNoError) {
        return result;
    }
    for (std::uint32_t c = 0; c < settings.numChannels; ++c) {
        for (std::int32_t i = 0; i < request.count; ++i) {
            request.maxima[c][i] = kLevel;
            request.minima[c][i] = -kLevel;
        }
    }
    return kImportNoError;
}

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* param1, void* param2) {
    switch (selector) {
        case kImportInit:
            return Init(*static_cast<imImportInfoRec*>(param1));
        case kImportGetIndFormat:
            return FileFormat(reinterpret_cast<std::intptr_t>(param1), *static_cast<imIndFormatRec*>(param2));
        case kImportGetIndPixelFormat:
            return PixelFormat(reinterpret_cast<std::intptr_t>(param1), *static_cast<imIndPixelFormatRec*>(param2));
        case kImportReserved28:
            return kImportReserved28Answer;
        case kImportGetPrefs:
            return Settings(*static_cast<imGetPrefsRec*>(param2));
        case kImportGetInfo:
            return Describe(*static_cast<imFileInfoRec8*>(param2));
        case kImportReleasePrivateData:
            return Release(param2);
        case kImportImage:
            return Draw(*static_cast<const imImportImageRecEx*>(param2));
        case kImportAudio:
            return Play(*static_cast<const imImportAudioRec7*>(param2));
        case kImportPeakAudio:
            return Overview(*static_cast<const imPeakAudioRec*>(param2));
        default:
            return kImportUnsupported;
    }
}
