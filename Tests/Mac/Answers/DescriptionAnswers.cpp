#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Mac/Answers/Answers.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

namespace test {

namespace {

constexpr std::uint8_t kFiller = 0xCC;

// A record with room around it.
template <class Record>
struct Framed {
    std::array<std::uint8_t, 64> before;
    Record record;
    std::array<std::uint8_t, 64> after;

    Framed() { std::memset(static_cast<void*>(this), kFiller, sizeof *this); }
};

void AddResult(AnswerWriter& answers, const std::string& question, std::int32_t result) {
    answers.Add(question + ": result", &result, sizeof result);
}

void AskClip(ImportEntryFunction* entry, AnswerWriter& answers, const std::string& question, BarsAndToneInfo* prefs,
             float hostRate) {
    Framed<imFileInfoRec8> framed;
    framed.record.sampleRate = hostRate;
    framed.record.prefs = prefs;
    AddResult(answers, question, entry(kImportGetInfo, nullptr, nullptr, &framed.record));
    void* const privateData = framed.record.privateData;
    framed.record.prefs = nullptr;
    framed.record.privateData = nullptr;
    answers.Add(question, &framed, sizeof framed);
    answers.Add(question + ": private copy", privateData, sizeof(BarsAndToneInfo));
    AddResult(answers, question + ": released", entry(kImportReleasePrivateData, nullptr, nullptr, privateData));
}

}  // namespace

void AskDescriptions(ImportEntryFunction* entry, AnswerWriter& answers) {
    Framed<imImportInfoRec> capabilities;
    AddResult(answers, "capabilities", entry(kImportInit, nullptr, &capabilities.record, nullptr));
    answers.Add("capabilities", &capabilities, sizeof capabilities);

    for (const std::intptr_t index : {-1, 0, 1, 2}) {
        void* const param = reinterpret_cast<void*>(index);  // NOLINT(performance-no-int-to-ptr): the boundary's way
        const std::string number = std::to_string(index);
        Framed<imIndFormatRec> format;
        AddResult(answers, "format " + number, entry(kImportGetIndFormat, nullptr, param, &format.record));
        answers.Add("format " + number, &format, sizeof format);
        Framed<imIndPixelFormatRec> pixels;
        AddResult(answers, "pixel format " + number, entry(kImportGetIndPixelFormat, nullptr, param, &pixels.record));
        answers.Add("pixel format " + number, &pixels, sizeof pixels);
    }

    for (std::int32_t selector = -1; selector < 64; ++selector) {
        switch (selector) {
            case kImportInit:
            case kImportImage:
            case kImportGetIndFormat:
            case kImportAudio:
            case kImportGetIndPixelFormat:
            case kImportGetInfo:
            case kImportGetPrefs:
            case kImportPeakAudio:
                continue;  // asked in full
            default:
                AddResult(answers, "selector " + std::to_string(selector), entry(selector, nullptr, nullptr, nullptr));
        }
    }

    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float rate : {48000.0F, 44100.0F, 0.0F, -1.0F, 1e-30F, 3e38F, 47952.05F, kInfinity, std::nanf("")}) {
        const std::string at = " at " + std::to_string(rate);
        AskClip(entry, answers, "default clip" + at, nullptr, rate);
        for (const std::uint32_t channels : {0U, 1U, 2U, 3U, 6U, 0xFFFFFFFFU}) {
            BarsAndToneInfo prefs{.version = 7,
                                  .sampleRate = rate,
                                  .channelType = 99,
                                  .numChannels = channels,
                                  .identifyChannels = 1,
                                  .frequency = 440.0F,
                                  .amplitude = 0.5F,
                                  .identifierFormat = BLITS5_1};
            AskClip(entry, answers, "clip of " + std::to_string(channels) + " channels" + at, &prefs, 1.0F);
        }
    }
}

}  // namespace test
