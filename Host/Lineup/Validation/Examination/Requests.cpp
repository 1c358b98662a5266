#include "Host/Lineup/Validation/Examination/Requests.h"

#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Examination.h"

#include <fmt/format.h>

#include <span>

namespace lineup::validation {

namespace {

Samples Copy(const GuardedBuffers& buffers, std::size_t channels) {
    Samples samples;
    for (std::size_t c = 0; c < channels; ++c) {
        const std::span<const float> channel = buffers.Channel(c);
        samples.emplace_back(channel.begin(), channel.end());
    }
    return samples;
}

std::size_t AtLeastNone(std::int32_t count) {
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace

std::string Text(const Stretch& stretch) {
    return fmt::format("audio of {} samples from {} on", stretch.count, stretch.position);
}

std::string Text(const PeakStretch& stretch) {
    return fmt::format("{} peaks at {} Hz from sample {} on", stretch.count, stretch.rateHz, stretch.position);
}

std::int32_t SendAudio(const RawImporter& plugin, const SettingsPointers& settings, const Stretch& stretch,
                       GuardedBuffers& buffers, Placement placement) {
    GuardedRecord<imImportAudioRec7> record(placement);
    record.Put({.position = stretch.position,
                .count = stretch.count,
                .buffers = buffers.Pointers(),
                .privateData = settings.privateData,
                .prefs = settings.prefs});
    const std::int32_t result = plugin.Call(kImportAudio, nullptr, record.Data());
    const std::string what = Text(stretch);
    RequireIntact("the record of " + what, record.ChangedOutside());
    RequireIntact(what, buffers.WrittenOutside());
    return result;
}

std::int32_t SendPeaks(const RawImporter& plugin, const SettingsPointers& settings, const PeakStretch& stretch,
                       GuardedBuffers& maxima, GuardedBuffers& minima, Placement placement) {
    GuardedRecord<imPeakAudioRec> record(placement);
    record.Put({.privateData = settings.privateData,
                .prefs = settings.prefs,
                .position = stretch.position,
                .peakRate = stretch.rateHz,
                .count = stretch.count,
                .maxima = maxima.Pointers(),
                .minima = minima.Pointers()});
    const std::int32_t result = plugin.Call(kImportPeakAudio, nullptr, record.Data());
    const std::string what = Text(stretch);
    RequireIntact("the record of " + what, record.ChangedOutside());
    RequireIntact(what + ", maxima", maxima.WrittenOutside());
    RequireIntact(what + ", minima", minima.WrittenOutside());
    return result;
}

std::int32_t SendFrame(const RawImporter& plugin, const FrameShape& shape, vexel frame, Placement placement) {
    GuardedRecord<imImportImageRecEx> record(placement);
    imImportImageRecEx request = record.Get();
    request.width = static_cast<std::int16_t>(shape.width);
    request.height = static_cast<std::int16_t>(shape.height);
    request.pixelFormat = shape.pixelFormat;
    request.frame = frame;
    record.Put(request);
    const std::int32_t result = plugin.Call(kImportImage, nullptr, record.Data());
    RequireIntact("the record of " + Text(shape), record.ChangedOutside());
    return result;
}

void DrawFrame(const RawImporter& plugin, const GuardedFrame& frame, Placement placement) {
    const std::string what = Text(frame.Shape());
    const std::int32_t result = SendFrame(plugin, frame.Shape(), frame.Handle(), placement);
    Require(result == kImportNoError, "{} is answered with {} instead of 0", what, result);
    RequireIntact(what, frame.WrittenOutside());
}

Samples ReadAudio(const RawImporter& plugin, const BarsAndToneInfo& settings, std::size_t channels,
                  const Stretch& stretch) {
    GuardedRecord<BarsAndToneInfo> prefs(settings);
    GuardedBuffers buffers(kMostChannels, stretch.count);
    const std::int32_t result = SendAudio(plugin, {.prefs = prefs.Data()}, stretch, buffers);
    const std::string what = Text(stretch);
    Require(result == kImportNoError, "{} is answered with {} instead of 0", what, result);
    RequireIntact("the settings of " + what, prefs.ChangedOutside());
    RequireIntact(what, buffers.LeftUnwritten(channels));
    return Copy(buffers, channels);
}

Peaks ReadPeaks(const RawImporter& plugin, const BarsAndToneInfo& settings, std::size_t channels,
                const PeakStretch& stretch) {
    GuardedRecord<BarsAndToneInfo> prefs(settings);
    GuardedBuffers maxima(kMostChannels, AtLeastNone(stretch.count));
    GuardedBuffers minima(kMostChannels, AtLeastNone(stretch.count));
    const std::int32_t result = SendPeaks(plugin, {.prefs = prefs.Data()}, stretch, maxima, minima);
    const std::string what = Text(stretch);
    Require(result == kImportNoError, "{} is answered with {} instead of 0", what, result);
    RequireIntact("the settings of " + what, prefs.ChangedOutside());
    RequireIntact(what + ", maxima", maxima.LeftUnwritten(channels));
    RequireIntact(what + ", minima", minima.LeftUnwritten(channels));
    return {.maxima = Copy(maxima, channels), .minima = Copy(minima, channels)};
}

Description::Description(const RawImporter& plugin, void* prefs, float hostRateHz, Placement placement)
    : mPlugin(&plugin), mRecord(placement) {
    imFileInfoRec8 record = mRecord.Get();
    record.sampleRate = hostRateHz;
    record.privateData = nullptr;
    record.prefs = prefs;
    mRecord.Put(record);
    // NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer): the record must be filled first
    mResult = plugin.Call(kImportGetInfo, nullptr, mRecord.Data());
}

// A release that throws is a failure of the check that is about releases.
Description::~Description() {
    try {
        mPlugin->Call(kImportReleasePrivateData, nullptr, mRecord.Get().privateData);
    } catch (const Failure&) {  // NOLINT(bugprone-empty-catch): see above
    }
}

}  // namespace lineup::validation
