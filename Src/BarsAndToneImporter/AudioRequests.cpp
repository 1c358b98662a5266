#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneImporter.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Src/ToneGenerator/ToneGenerator.h"
#include "Src/VectorPrimitives/VectorPrimitives.h"

#include <cstring>
#include <optional>

using zelmediatypes::FrameRate;
using zelmediatypes::TickTime;

namespace {

constexpr float kEBUStereo1000Frequency = 1000.0F;
constexpr float kEBUStereo400Frequency = 400.0F;

// The settings of a request: prefs before privateData, nothing when both are null. Hosts may keep the
// record at any address, so it is copied out.
std::optional<BarsAndToneInfo> ReadSettings(const void* prefs, const void* privateData) {
    const void* const source = prefs != nullptr ? prefs : privateData;
    if (source == nullptr) {
        return std::nullopt;
    }
    BarsAndToneInfo settings;
    std::memcpy(&settings, source, sizeof settings);
    return settings;
}

bool PlaysIdent(const BarsAndToneInfo& settings) {
    return settings.identifyChannels == 1;
}

int ChannelCount(const BarsAndToneInfo& settings) {
    return static_cast<int>(settings.numChannels);
}

// An unknown sequence writes nothing.
void GenerateIdent(const ToneGenerator& generator, const BarsAndToneInfo& settings, const TickTime& startTime,
                   float** buffers, long long count, bool peakMode) {
    const int numChannels = ChannelCount(settings);
    switch (settings.identifierFormat) {
        case EBUStereo1000:
            generator.GenerateEBUStereo(startTime, kEBUStereo1000Frequency, buffers, numChannels, count, peakMode);
            break;
        case EBUStereo400:
            generator.GenerateEBUStereo(startTime, kEBUStereo400Frequency, buffers, numChannels, count, peakMode);
            break;
        case EBUMultichannel:
            generator.GenerateEBUMultichannel(startTime, buffers, numChannels, count, peakMode);
            break;
        case BLITS5_1:
            generator.GenerateBLITS(startTime, buffers, numChannels, count, peakMode);
            break;
    }
}

// The minima of a band that lies evenly about zero.
void NegateMaxima(const imPeakAudioRec& request, int numChannels) {
    for (int c = 0; c < numChannels; ++c) {
        ippsMulC_32f(request.maxima[c], -1.0F, request.minima[c], request.count);
    }
}

}  // namespace

std::int32_t barsImportAudio(imImportAudioRec7* request) {
    const auto settings = ReadSettings(request->prefs, request->privateData);
    if (!settings) {
        return kImportNoSettings;
    }
    const FrameRate sampleLength = zelmediatypes::FrameRateFromHz(settings->sampleRate);
    const TickTime startTime = sampleLength * request->position;
    const ToneGenerator generator(sampleLength, ChannelCount(*settings));
    if (PlaysIdent(*settings)) {
        GenerateIdent(generator, *settings, startTime, request->buffers, request->count, false);
    } else {
        generator.GenerateTonesAcrossChannels(startTime, settings->frequency, settings->amplitude, request->buffers,
                                              ChannelCount(*settings), request->count, false);
    }
    return kImportNoError;
}

std::int32_t barsGetPeakAudio(imPeakAudioRec* request) {
    const auto settings = ReadSettings(request->prefs, request->privateData);
    if (!settings) {
        return kImportNoSettings;
    }
    const TickTime startTime = zelmediatypes::FrameRateFromHz(settings->sampleRate) * request->position;
    const FrameRate peakLength = zelmediatypes::FrameRateFromHz(request->peakRate);
    const int numChannels = ChannelCount(*settings);
    const ToneGenerator generator(peakLength, numChannels);

    if (PlaysIdent(*settings)) {
        GenerateIdent(generator, *settings, startTime, request->maxima, request->count, true);
        NegateMaxima(*request, numChannels);
        return kImportNoError;
    }

    const bool drawnAsWaveform = static_cast<double>(settings->frequency) < zelmediatypes::RateHz(peakLength);
    generator.GenerateTonesAcrossChannels(startTime, settings->frequency, settings->amplitude, request->maxima,
                                          numChannels, request->count, !drawnAsWaveform);
    if (drawnAsWaveform) {
        for (int c = 0; c < numChannels; ++c) {
            ippsCopy_32f(request->maxima[c], request->minima[c], request->count);
        }
    } else {
        NegateMaxima(*request, numChannels);
    }
    return kImportNoError;
}
