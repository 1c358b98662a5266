#include "Host/Lineup/Validation/Examination/TestClip.h"

#include "Host/Interface/Importer/ImportRecords.h"
#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Requests.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace lineup::validation {

namespace {

constexpr std::array kHostRatesHz = {48000.0F, 44100.0F};

void RequireChannels(const imFileInfoRec8& info, std::string_view name) {
    Require(info.numChannels >= 1 && info.numChannels <= kMostChannels,
            "{} is described with {} channels; hosts play 1 to {}", name, std::uint32_t{info.numChannels},
            kMostChannels);
    const float rateHz = info.sampleRate;
    const bool playable = rateHz > 0 && rateHz <= kHighestRateHz;  // not for NaN
    Require(playable, "{} is described at {} Hz; hosts play rates above 0, at most {}", name, rateHz, kHighestRateHz);
    const std::uint32_t format = info.audioSampleFormat;
    Require(format == kAudioSampleFormatFloat, "{}: the sample format is {} instead of {}", name, format,
            kAudioSampleFormatFloat);
    const std::int64_t samples = info.durationSamples;
    Require(samples >= 0, "{} is described as {} samples long", name, samples);
}

void RequireVideo(const imFileInfoRec8& info, std::string_view name) {
    const bool right = info.video12 == kClipVideo12 && info.video22 == kClipVideo22 && info.video31 == kClipVideo31 &&
                       info.video32 == kClipVideo32;
    Require(right, "{}: the video properties are {}, {}, {} and {} instead of {}, {}, {} and {}", name,
            std::uint16_t{info.video12}, info.video22, info.video31, info.video32, kClipVideo12, kClipVideo22,
            kClipVideo31, kClipVideo32);
}

TestClip AsTestClip(std::string name, SettingsBytes settings, const Description& description) {
    Require(description.Result() == kImportNoError, "the description of {} is answered with {} instead of 0", name,
            description.Result());
    const imFileInfoRec8 info = description.Record();
    Require(info.hasVideo <= 1 && info.hasAudio <= 1 && info.hasVideo + info.hasAudio > 0,
            "{}: the content flags are {} and {}; each is 0 or 1, and not both are 0", name, info.hasVideo,
            info.hasAudio);
    if (info.hasVideo != 0) {
        RequireVideo(info, name);
    }
    if (info.hasAudio != 0) {
        RequireChannels(info, name);
    }
    return {.name = std::move(name),
            .settings = std::move(settings),
            .channels = info.hasAudio != 0 ? info.numChannels : 0,
            .rateHz = info.sampleRate,
            .durationSamples = info.durationSamples,
            .hasVideo = info.hasVideo != 0,
            .hasAudio = info.hasAudio != 0};
}

}  // namespace

SettingsBytes MakeDefaults(Examination& examination, float rateHz) {
    SettingsBytes settings(examination.SettingsSize());
    if (!settings.empty()) {
        GuardedBytes prefs(settings);
        SendDefaults(examination.Plugin(), prefs, rateHz);
        settings.assign(prefs.Bytes().begin(), prefs.Bytes().end());
    }
    return settings;
}

TestClip Describe(Examination& examination, std::string name, SettingsBytes settings) {
    GuardedBytes prefs(settings);
    const Description description(examination.Plugin(), AsPrefs(prefs), kHostRatesHz[0]);
    RequireIntact("the settings of a description", prefs.ChangedOutside());
    return AsTestClip(std::move(name), std::move(settings), description);
}

TestClip DescribeWithoutSettings(Examination& examination, std::string name, float rateHz) {
    return AsTestClip(std::move(name), {}, Description(examination.Plugin(), nullptr, rateHz));
}

std::vector<TestClip> NewClips(Examination& examination, std::span<const float> ratesHz) {
    std::vector<TestClip> clips;
    for (const float rateHz : ratesHz) {
        SettingsBytes settings = MakeDefaults(examination, rateHz);
        if (std::ranges::find(clips, settings, &TestClip::settings) == clips.end()) {
            clips.push_back(Describe(examination, fmt::format("a new clip at {} Hz", rateHz), std::move(settings)));
        }
    }
    return clips;
}

std::vector<TestClip> AllClips(Examination& examination) {
    std::vector<TestClip> clips = NewClips(examination, kHostRatesHz);
    for (const KnownSettings& known : examination.Known()) {
        clips.push_back(Describe(examination, known.name, known.bytes));
    }
    return clips;
}

std::vector<TestClip> WithSound(std::vector<TestClip> clips) {
    std::erase_if(clips, [](const TestClip& clip) { return !clip.hasAudio; });
    if (clips.empty()) {
        throw Skipped("its clips have no sound");
    }
    return clips;
}

void RequirePictures(Examination& examination) {
    const TestClip clip = Describe(examination, "a new clip", MakeDefaults(examination, kHostRatesHz[0]));
    if (!clip.hasVideo) {
        throw Skipped("its clips have no pictures");
    }
}

}  // namespace lineup::validation
