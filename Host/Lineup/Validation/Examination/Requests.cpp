#include "Host/Lineup/Validation/Examination/Requests.h"

#include "Host/Interface/Importer/ImportSelectors.h"
#include "Host/Lineup/Validation/Examination/Failure.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <span>

namespace lineup::validation {

namespace {

Samples Copy(const GuardedBuffers& buffers, std::size_t channels) {
    Samples samples;
    for (std::size_t c = 0; c < channels; ++c) {
        const std::span<const float> channel = buffers.Channel(c);
        samples.emplace_back(channel.begin(), channel.end());
        std::ranges::replace_if(samples.back(), IsUnwritten, 0.0F);
    }
    return samples;
}

std::size_t AtLeastNone(std::int32_t count) {
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void RequireAnswer(std::int32_t result, const std::string& what) {
    Require(result == kImportNoError, "{} is answered with {} instead of 0", what, result);
}

// Of `channels` channels each is written whole or left alone, and the extra ones are left alone.
void RequireWhole(const GuardedBuffers& buffers, std::size_t channels, const std::string& what) {
    RequireIntact(what, buffers.WrittenInPart(channels));
    RequireIntact(what, buffers.NotFinite(channels));
    RequireIntact(what, buffers.WrittenFrom(std::max(channels, kFewestBuffers)));
}

void RequireInOrder(const Peaks& peaks, const std::string& what) {
    for (std::size_t c = 0; c < peaks.maxima.size(); ++c) {
        for (std::size_t i = 0; i < peaks.maxima[c].size(); ++i) {
            if (peaks.minima[c][i] > peaks.maxima[c][i]) {
                Fail("{}: channel {}, peak {} has a minimum of {}, above its maximum of {}", what, c, i,
                     peaks.minima[c][i], peaks.maxima[c][i]);
            }
        }
    }
}

}  // namespace

std::size_t BuffersFor(std::size_t channels) {
    return std::max(channels, kFewestBuffers) + kExtraBuffers;
}

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
    RequireAnswer(SendFrame(plugin, frame.Shape(), frame.Handle(), placement), what);
    RequireIntact(what, frame.WrittenOutside());
}

std::vector<std::uint32_t> DrawnFormats(const RawImporter& plugin) {
    const FrameShape shape{.width = 16, .height = 9, .pixelFormat = kPixelFormat_VUYA_8u};
    const GuardedFrame frame(shape);
    if (SendFrame(plugin, shape, frame.Handle()) == kImportUnsupported) {
        return {kPixelFormat_VUYA_32f};
    }
    return {kPixelFormat_VUYA_32f, kPixelFormat_VUYA_8u};
}

void SendDefaults(const RawImporter& plugin, GuardedBytes& prefs, float rateHz, std::uint8_t useDefaults,
                  Placement placement) {
    GuardedRecord<imGetPrefsRec> record(placement);
    imGetPrefsRec request = record.Get();
    request.prefs = prefs.Data();
    request.useDefaults = useDefaults;
    request.hostSampleRate = rateHz;
    record.Put(request);
    const std::int32_t result = plugin.Call(kImportGetPrefs, nullptr, record.Data());
    const std::string what = fmt::format("the silent defaults at {} Hz", rateHz);
    Require(result == kImportNoError, "{} are answered with {} instead of 0", what, result);
    RequireIntact("the record of " + what, record.ChangedOutside());
    RequireIntact("the buffer of " + what, prefs.ChangedOutside({{0, prefs.Size()}}));
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
    if (void* const privateData = PrivateData(); privateData != nullptr) {
        try {
            mPlugin->Call(kImportReleasePrivateData, nullptr, privateData);
        } catch (const Failure&) {  // NOLINT(bugprone-empty-catch): see above
        }
    }
}

void Description::RequireRecordIntact() const {
    RequireIntact("the record of GetInfo", mRecord.ChangedOutside({{offsetof(imFileInfoRec8, hasVideo), 2},
                                                                   {offsetof(imFileInfoRec8, video12), 2},
                                                                   {offsetof(imFileInfoRec8, video22), 1},
                                                                   {offsetof(imFileInfoRec8, video31), 2},
                                                                   {offsetof(imFileInfoRec8, numChannels), 20},
                                                                   {offsetof(imFileInfoRec8, privateData), 8}}));
}

HostSettings::HostSettings(const RawImporter& plugin, const TestClip& clip, Placement placement)
    : mPrefs(clip.settings, placement) {
    if (clip.settings.empty()) {
        mDescription.emplace(plugin, nullptr, clip.rateHz);
    }
}

SettingsPointers HostSettings::Pointers() {
    if (mDescription) {
        return {.privateData = mDescription->PrivateData()};
    }
    return {.prefs = mPrefs.Data()};
}

void HostSettings::RequireUnchanged(const std::string& what) const {
    RequireIntact("the settings of " + what, mPrefs.ChangedOutside());
}

Samples ReadWith(const RawImporter& plugin, const SettingsPointers& settings, std::size_t channels,
                 const Stretch& stretch) {
    GuardedBuffers buffers(BuffersFor(channels), stretch.count);
    RequireAnswer(SendAudio(plugin, settings, stretch, buffers), Text(stretch));
    RequireWhole(buffers, channels, Text(stretch));
    return Copy(buffers, channels);
}

Samples ReadAudio(const RawImporter& plugin, const TestClip& clip, const Stretch& stretch, Placement placement) {
    HostSettings settings(plugin, clip, placement);
    GuardedBuffers buffers(BuffersFor(clip.channels), stretch.count);
    const std::int32_t result = SendAudio(plugin, settings.Pointers(), stretch, buffers, placement);
    const std::string what = fmt::format("{} of {}", Text(stretch), clip.name);
    RequireAnswer(result, what);
    settings.RequireUnchanged(what);
    RequireWhole(buffers, clip.channels, what);
    return Copy(buffers, clip.channels);
}

bool ServesPeaks(const RawImporter& plugin, const TestClip& clip) {
    HostSettings settings(plugin, clip);
    GuardedBuffers maxima(BuffersFor(clip.channels), 1);
    GuardedBuffers minima(BuffersFor(clip.channels), 1);
    return SendPeaks(plugin, settings.Pointers(), {.rateHz = 100.0F, .count = 1}, maxima, minima) != kImportUnsupported;
}

Peaks ReadPeaks(const RawImporter& plugin, const TestClip& clip, const PeakStretch& stretch, Placement placement) {
    HostSettings settings(plugin, clip, placement);
    GuardedBuffers maxima(BuffersFor(clip.channels), AtLeastNone(stretch.count));
    GuardedBuffers minima(BuffersFor(clip.channels), AtLeastNone(stretch.count));
    const std::int32_t result = SendPeaks(plugin, settings.Pointers(), stretch, maxima, minima, placement);
    if (result == kImportUnsupported) {
        throw Skipped("it makes no waveform overviews: peak requests are answered with 3");
    }
    const std::string what = fmt::format("{} of {}", Text(stretch), clip.name);
    RequireAnswer(result, what);
    settings.RequireUnchanged(what);
    RequireWhole(maxima, clip.channels, what + ", maxima");
    RequireWhole(minima, clip.channels, what + ", minima");
    Peaks peaks{.maxima = Copy(maxima, clip.channels), .minima = Copy(minima, clip.channels)};
    RequireInOrder(peaks, what);
    return peaks;
}

}  // namespace lineup::validation
