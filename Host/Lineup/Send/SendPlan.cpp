#include "Host/Lineup/Send/SendPlan.h"

#include <lineup/ChannelLayout.h>
#include <lineup/ExportSettings.h>
#include <lineup/UsageError.h>
#include "Host/Lineup/Export/Formats/SoundNames.h"
#include "Host/Lineup/Export/Plan/CheckExport.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace lineup {
inline namespace parts {

namespace {

// What a transport stream can be told of its sound is in the codec.
constexpr FileFormat kStreamFormat = {.extension = "ts", .description = "MPEG transport stream"};
const Container kStreamContainer = {.format = kStreamFormat, .needsLayoutInCodec = true};

constexpr int kLongestGroup = 600;

template <class Row>
const Row* ChosenCodec(const char* option, const std::string& name, std::span<const Row> rows) {
    if (name == kNoCodec) {
        return nullptr;
    }
    if (name.empty()) {
        return &rows.front();
    }
    const auto found = std::ranges::find(rows, name, [](const Row& row) { return row.encoding.codec.name; });
    if (found == rows.end()) {
        std::vector<std::string_view> names;
        std::ranges::transform(rows, std::back_inserter(names), [](const Row& row) { return row.encoding.codec.name; });
        throw UsageError(option, name, fmt::format("must be {} or {}", fmt::join(names, ", "), kNoCodec));
    }
    return &*found;
}

int GroupFrames(const SendSettings& settings) {
    if (settings.groupFrames < 0 || settings.groupFrames > kLongestGroup) {
        throw UsageError("gop", fmt::format("{}", settings.groupFrames),
                         fmt::format("must be from 1, every picture alone, to {} frames", kLongestGroup));
    }
    const int half = settings.frameRate.num / (2 * settings.frameRate.den);
    return settings.groupFrames > 0 ? settings.groupFrames : std::max(half, 1);
}

void PlanStreamPicture(const SendSettings& settings, const StreamPictureCodec& codec, StreamPicturePlan& plan) {
    ExportSettings picture;
    picture.width = settings.width;
    picture.height = settings.height;
    picture.scan = settings.scan;
    picture.frameRate = settings.frameRate;
    const VideoCodec& row = codec.encoding.codec;
    CheckPictureSize(row, settings.width, settings.height);
    CheckScan(row, picture);
    CheckFrameRate(row, settings.frameRate);
    CheckPixelRate(row, picture);
    const int group = GroupFrames(settings);
    plan.codec = &codec;
    // Of two pictures that begin anew one after the other, H.264 wants different numbers: two take turns.
    plan.codedFrames = std::max(group, 2);
    plan.groupText = fmt::format("{}", group);
    plan.options.assign(codec.encoding.options.begin(), codec.encoding.options.end());
    plan.options.push_back({"g", plan.groupText});
    plan.encoding = codec.encoding;
    plan.encoding.options = plan.options;
    plan.picture.encoding = &plan.encoding;
    plan.picture.width = settings.width;
    plan.picture.height = settings.height;
    plan.picture.card = settings.card;
    plan.picture.shape = ShapeOf(settings.width, settings.height, settings.aspect);
    plan.picture.scan = settings.scan;
    plan.picture.frameRate = settings.frameRate;
}

void PlanStreamSound(const Clip& clip, const StreamSoundCodec& codec, StreamSoundPlan& plan) {
    const ChannelLayout& layout = CheckChannels(clip);
    const auto channels = static_cast<int>(layout.channels.size());
    const std::string name(codec.encoding.codec.name);
    if (channels > codec.mostChannels) {
        throw UsageError("audio-codec", name,
                         fmt::format("has {} channels at most, and the clip {}", codec.mostChannels, channels));
    }
    if (codec.channelsInPairs && channels % 2 != 0) {
        throw UsageError("audio-codec", name,
                         fmt::format("has channels in pairs, and the clip has {}: choose --channels stereo", channels));
    }
    plan.codec = &codec;
    plan.sound.encoding = &codec.encoding;
    plan.sound.sampleRateHz = CheckSampleRate(kStreamFormat, codec.encoding.codec, clip.SampleRate());
    CheckLayout(kStreamContainer, codec.encoding, layout, /*monoTracks=*/false);
    plan.sound.tracks = {{.channels = {layout.fileOrder.begin(), layout.fileOrder.end()},
                          .layout = LayoutOfAll(codec.encoding, layout.channels.size()),
                          .label = {},
                          .title = {}}};
}

}  // namespace

void PlanSend(const Clip& clip, const SendSettings& settings, SendPlan& plan) {
    const StreamPictureCodec* const picture = ChosenCodec("video-codec", settings.videoCodec, StreamPictureCodecs());
    const StreamSoundCodec* const sound = ChosenCodec("audio-codec", settings.audioCodec, StreamSoundCodecs());
    if (picture == nullptr && sound == nullptr) {
        throw UsageError("audio-codec", kNoCodec, "leaves nothing to send, as there is no picture either");
    }
    if (picture != nullptr) {
        plan.slotRate = settings.frameRate;
        PlanStreamPicture(settings, *picture, plan.picture.emplace());
    }
    if (sound != nullptr) {
        PlanStreamSound(clip, *sound, plan.sound.emplace());
    }
    if (settings.samples && *settings.samples <= 0) {
        throw UsageError("for", fmt::format("{} samples", *settings.samples), "must be above 0");
    }
}

}  // namespace parts
}  // namespace lineup
