#include "Host/Interface/Core/VectorRuntime.h"
#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"
#include "Tests/Mac/Answers/Answers.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace test {

namespace {

constexpr std::uint32_t kChannels = 6;                       // an ident may write six whatever the clip has
constexpr std::uint32_t kRoom = 16;                          // floats on either side
constexpr auto kFiller = std::bit_cast<float>(0x7FA0CCCCU);  // a NaN that no tone has

// Six buffers with room around them.
class Buffers {
public:
    explicit Buffers(std::uint32_t count) : mSamples(kChannels * Length(count), kFiller) {
        for (std::uint32_t c = 0; c < kChannels; ++c) {
            mPointers[c] = mSamples.data() + c * Length(count) + kRoom;
        }
    }

    [[nodiscard]] float** Pointers() { return mPointers.data(); }
    void AddTo(AnswerWriter& answers, const std::string& question) const {
        answers.Add(question, mSamples.data(), mSamples.size() * sizeof(float));
    }

private:
    static std::size_t Length(std::uint32_t count) { return std::size_t{count} + 2 * kRoom; }

    std::vector<float> mSamples;
    std::array<float*, kChannels> mPointers{};
};

struct Stretch {
    std::int64_t position;
    std::uint32_t count;
    float peakRate;  ///< peaks a second
};

std::string Describe(const BarsAndToneInfo& settings, const Stretch& stretch) {
    std::string text = settings.identifyChannels == 1 ? "ident " + std::to_string(settings.identifierFormat)
                                                      : "tone of " + std::to_string(settings.frequency) + " at " +
                                                            std::to_string(settings.amplitude);
    text += ", " + std::to_string(settings.numChannels) + " channels, rate " + std::to_string(settings.sampleRate);
    text += ", " + std::to_string(stretch.count) + " from " + std::to_string(stretch.position);
    return text + ", level " + std::to_string(ippJumpIndexForMergedLibs.load());
}

void AskStretch(ImportEntryFunction* entry, AnswerWriter& answers, BarsAndToneInfo settings, const Stretch& stretch,
                bool fromPrivateCopy) {
    void* const prefs = fromPrivateCopy ? nullptr : &settings;
    const std::string question = Describe(settings, stretch);
    Buffers samples(stretch.count);
    imImportAudioRec7 sound{.position = stretch.position,
                            .count = stretch.count,
                            .buffers = samples.Pointers(),
                            .privateData = &settings,
                            .prefs = prefs};
    std::int32_t result = entry(kImportAudio, nullptr, nullptr, &sound);
    answers.Add("sound, result: " + question, &result, sizeof result);
    samples.AddTo(answers, "sound: " + question);

    Buffers maxima(stretch.count);
    Buffers minima(stretch.count);
    imPeakAudioRec peaks{.privateData = &settings,
                         .prefs = prefs,
                         .position = stretch.position,
                         .peakRate = stretch.peakRate,
                         .count = static_cast<std::int32_t>(stretch.count),
                         .maxima = maxima.Pointers(),
                         .minima = minima.Pointers()};
    result = entry(kImportPeakAudio, nullptr, nullptr, &peaks);
    answers.Add("peaks, result: " + question, &result, sizeof result);
    maxima.AddTo(answers, "peaks, maxima: " + question);
    minima.AddTo(answers, "peaks, minima: " + question);
}

void AskWithoutSettings(ImportEntryFunction* entry, AnswerWriter& answers) {
    imImportAudioRec7 sound{};
    imPeakAudioRec peaks{};
    for (const std::int32_t result :
         {entry(kImportAudio, nullptr, nullptr, &sound), entry(kImportPeakAudio, nullptr, nullptr, &peaks)}) {
        answers.Add("sound without settings", &result, sizeof result);
    }
}

constexpr std::array<float, 12> kRates = {48000.0F, 44100.0F,  96000.0F, 192000.0F, 8000.0F, 22050.0F,
                                          11025.0F, 47952.05F, 7350.7F,  1000.0F,   32.5F,   1.0F};
constexpr std::array<float, 10> kFrequencies = {1000.0F,  440.0F, 0.0F,     -3.0F, 997.3F,
                                                23999.0F, 0.1F,   60000.0F, 1e9F,  1e-20F};
constexpr std::array<float, 7> kAmplitudes = {0.25F, 1.0F, 0.0F, -0.5F, 1e-30F, 3e38F, 0.1F};
constexpr std::array<std::uint32_t, 4> kChannelCounts = {2, 6, 1, 0};
constexpr std::array<std::int64_t, 16> kPositions = {
    0,      1,  12345,  131999,  132000,    143999,       144000,    575999,
    643200, -1, -48000, 1 << 30, 1LL << 40, -(1LL << 41), 1LL << 62, std::numeric_limits<std::int64_t>::min()};
constexpr std::array<std::uint32_t, 14> kCounts = {4800, 0, 1, 2, 3, 7, 8, 31, 63, 64, 65, 480, 1601, 4801};
constexpr std::array<float, 6> kPeakRates = {48000.0F, 100.0F, 2000.0F, 999.5F, 0.5F, 1e6F};

// Numbers that are the same wherever the program is built: those of the standard's distributions are not.
class Draw {
public:
    explicit Draw(std::uint64_t seed) : mNumbers(seed) {}

    template <class T, std::size_t kSize>
    T From(const std::array<T, kSize>& choices) {
        return choices[mNumbers() % kSize];
    }
    std::int64_t Below(std::int64_t limit) {
        return static_cast<std::int64_t>(mNumbers() % static_cast<std::uint64_t>(limit));
    }

private:
    std::mt19937_64 mNumbers;
};

// Four in five are sequences' and tones' own values, at a position in their first minute.
void AskDrawn(ImportEntryFunction* entry, AnswerWriter& answers, int requests, std::span<const std::int32_t> levels) {
    Draw draw(20);
    for (int i = 0; i < requests; ++i) {
        BarsAndToneInfo settings;
        settings.sampleRate = draw.From(kRates);
        settings.numChannels = draw.From(kChannelCounts);
        settings.channelType = ChannelTypeFor(settings.numChannels);
        settings.identifyChannels = static_cast<std::uint32_t>(draw.Below(2));
        settings.frequency = draw.From(kFrequencies);
        settings.amplitude = draw.From(kAmplitudes);
        settings.identifierFormat = static_cast<IdentifierFormat>(draw.Below(5));  // one more than there are
        Stretch stretch{
            .position = draw.From(kPositions), .count = draw.From(kCounts), .peakRate = draw.From(kPeakRates)};
        if (draw.Below(5) != 0) {
            stretch.position = draw.Below(60 * static_cast<std::int64_t>(settings.sampleRate) + 1);
            stretch.count = static_cast<std::uint32_t>(draw.Below(4801));
        }
        ippJumpIndexForMergedLibs.store(levels[static_cast<std::size_t>(i) % levels.size()]);
        AskStretch(entry, answers, settings, stretch, draw.Below(3) == 0);
    }
}

// Each sequence from its beginning to beyond its end, in the blocks of a playback.
void AskWholeCycles(ImportEntryFunction* entry, AnswerWriter& answers) {
    for (const IdentifierFormat format : {EBUStereo1000, EBUStereo400, EBUMultichannel, BLITS5_1}) {
        BarsAndToneInfo settings;
        settings.numChannels = 6;
        settings.identifyChannels = 1;
        settings.identifierFormat = format;
        constexpr std::uint32_t kBlock = 4800;
        constexpr std::int64_t kEnd = 14 * 48000;  // the longest lasts 13.4 s
        for (std::int64_t position = 0; position < kEnd; position += kBlock) {
            AskStretch(entry, answers, settings, {position, kBlock, 48000.0F}, false);
        }
    }
}

}  // namespace

void AskSound(ImportEntryFunction* entry, AnswerWriter& answers) {
    AskWithoutSettings(entry, answers);
    // The importer's first sound finds the level not chosen yet.
    AskStretch(entry, answers, {}, {.position = 0, .count = 4800, .peakRate = 100.0F}, false);
    const std::int32_t best = ippJumpIndexForMergedLibs.load();
    std::vector<std::int32_t> levels;
    for (std::int32_t level = 0; level <= best; ++level) {
        levels.push_back(level);
    }
    AskWholeCycles(entry, answers);
    AskDrawn(entry, answers, 3000, levels);
    ippJumpIndexForMergedLibs.store(best);
}

}  // namespace test
