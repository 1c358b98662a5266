// Another importer, written from the pages: a click every beat in the first of three channels, the second left alone,
// which is silence, the third zeros; a plain picture that it draws itself. Its settings are twelve bytes of its own. It
// lists no file formats, makes no waveform overviews and keeps no private copies.
#include <lineup/interface/Core/Export.h>
#include <lineup/interface/Frame/FrameServices.h>
#include <lineup/interface/Frame/PixelFormats.h>
#include <lineup/interface/Importer/ImportEntry.h>
#include <lineup/interface/Importer/ImportRecords.h>
#include <lineup/interface/Importer/ImportSelectors.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" ZEL_API ImportEntryFunction xImportEntry;

namespace {

struct ClickSettings {
    std::uint32_t mark = 0x4B4C4943;  // "CLIK", so that the settings of others are refused
    std::uint16_t beatsAMinute = 120;
    std::uint16_t reserved = 0;
    float level = 0.5F;
};
static_assert(sizeof(ClickSettings) == 12);

constexpr std::uint32_t kChannels = 3;
constexpr float kRateHz = 48000.0F;  // whatever the host's is
constexpr std::int64_t kSamplesAMinute = 48000 * 60;
constexpr std::int64_t kClickSamples = 48;

// Settings may lie at any address and hold anything.
bool Read(const void* prefs, ClickSettings& settings) {
    if (prefs != nullptr) {
        std::memcpy(&settings, prefs, sizeof settings);
    }
    return settings.mark == ClickSettings{}.mark && settings.beatsAMinute >= 30 && settings.beatsAMinute <= 300 &&
           settings.level >= 0 && settings.level <= 1;
}

std::int32_t Describe(imFileInfoRec8& info) {
    ClickSettings settings;
    if (!Read(info.prefs, settings)) {
        return kImportUnsupported;
    }
    info.hasVideo = info.hasAudio = 1;
    info.video12 = kClipVideo12;
    info.video22 = kClipVideo22;
    info.video31 = kClipVideo31;
    info.video32 = kClipVideo32;
    info.numChannels = kChannels;
    info.sampleRate = kRateHz;
    info.audioSampleFormat = kAudioSampleFormatFloat;
    info.durationSamples = kSamplesAMinute;
    return kImportNoError;
}

std::int32_t Settings(imGetPrefsRec& request) {
    if (request.prefs == nullptr) {
        request.prefsLength = sizeof(ClickSettings);
    } else if (request.useDefaults != 0) {
        const ClickSettings settings;
        std::memcpy(request.prefs, &settings, sizeof settings);
    }
    return kImportNoError;
}

std::int32_t Play(const imImportAudioRec7& request) {
    ClickSettings settings;
    if (request.prefs == nullptr) {
        return kImportNoSettings;
    }
    if (!Read(request.prefs, settings)) {
        return kImportUnsupported;
    }
    const std::int64_t beat = kSamplesAMinute / settings.beatsAMinute;
    const std::int64_t first = (request.position % beat + beat) % beat;
    for (std::uint32_t i = 0; i < request.count; ++i) {
        request.buffers[0][i] = (first + i) % beat < kClickSamples ? settings.level : 0.0F;
        request.buffers[2][i] = 0.0F;
    }
    return kImportNoError;
}

template <class Component>
std::int32_t Fill(const imImportImageRecEx& request, const Component (&vuya)[4]) {
    const std::ptrdiff_t rowBytes = vexelGetRowbytes(request.frame);
    for (int row = 0; row < request.height; ++row) {
        for (int column = 0; column < request.width; ++column) {
            std::uint8_t* const pixel = request.frame->pixels + row * rowBytes + column * std::ptrdiff_t{sizeof vuya};
            std::memcpy(pixel, vuya, sizeof vuya);
        }
    }
    return kImportNoError;
}

std::int32_t Draw(const imImportImageRecEx& request) {
    switch (request.pixelFormat) {
        case kPixelFormat_VUYA_32f:
            return Fill<float>(request, {0, 0, 0.25F, 1});
        case kPixelFormat_VUYA_8u:
            return Fill<std::uint8_t>(request, {128, 128, 71, 255});
        default:
            return kImportUnsupported;
    }
}

}  // namespace

std::int32_t xImportEntry(std::int32_t selector, imStdParms* /*stdParms*/, void* param1, void* param2) {
    switch (selector) {
        case kImportInit: {
            auto& info = *static_cast<imImportInfoRec*>(param1);
            info.capability28 = info.capability32 = info.capability36 = info.capability44 = 1;
            return kImportInitAnswer;
        }
        case kImportGetIndPixelFormat:
            if (param1 != nullptr) {
                return kImportEndOfList;
            }
            static_cast<imIndPixelFormatRec*>(param2)->pixelFormat = kPixelFormat_VUYA_32f;
            return kImportNoError;
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
