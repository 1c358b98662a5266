#include "Apps/lineup/Reports/CheckJson.h"

#include "Apps/lineup/Reports/JsonParts.h"

namespace cli {

namespace {

using nlohmann::ordered_json;

ordered_json ChannelJson(const lineup::ChannelReport& channel) {
    return {{"input", channel.input},
            {"channel", OrNull(channel.channel)},
            {"polarity", OrNull(channel.polarity)},
            {"level", OrNull(channel.level)},
            {"gain", OrNull(channel.gain)},
            {"delay", OrNull(channel.delay)},
            {"noise", OrNull(channel.noise)},
            {"distortion", OrNull(channel.distortion)},
            {"dc", OrNull(channel.dc)},
            {"effectiveBits", OrNull(channel.effectiveBits)}};
}

ordered_json SpeedJson(const std::optional<lineup::SpeedReport>& speed) {
    return speed ? ordered_json{{"ratio", speed->ratio}, {"ppm", speed->ppm}} : ordered_json();
}

ordered_json SoundJson(const std::optional<lineup::SoundReport>& sound) {
    if (!sound) {
        return {};
    }
    ordered_json channels = ordered_json::array();
    for (const lineup::ChannelReport& channel : sound->channels) {
        channels.push_back(ChannelJson(channel));
    }
    return {{"expected", OrNull(sound->expected)},
            {"sampleRate", OrNull(sound->sampleRate)},
            {"inputs", sound->inputs},
            {"startsAt", OrNull(sound->startsAt)},
            {"cycles", OrNull(sound->cycles)},
            {"speed", SpeedJson(sound->speed)},
            {"channels", channels}};
}

ordered_json PlaceJson(const std::optional<lineup::CardPlace>& place) {
    if (!place) {
        return {};
    }
    return {{"x", place->x},
            {"y", place->y},
            {"width", place->width},
            {"height", place->height},
            {"mirrored", place->mirrored},
            {"flipped", place->flipped}};
}

ordered_json QualityJson(const lineup::PictureQuality& quality) {
    return {{"edgeAcross", OrNull(quality.edgeAcross)},
            {"edgeDown", OrNull(quality.edgeDown)},
            {"ringing", OrNull(quality.ringing)},
            {"blocking", OrNull(quality.blocking)},
            {"noise", OrNull(quality.noise)}};
}

ordered_json ExplanationJson(const std::optional<lineup::PictureExplanation>& explanation) {
    if (!explanation) {
        return {};
    }
    return {{"error", explanation->error},
            {"next", OrNull(explanation->next)},
            {"nextError", OrNull(explanation->nextError)}};
}

ordered_json PictureJson(const std::optional<lineup::PictureReport>& picture) {
    if (!picture) {
        return {};
    }
    ordered_json patches = ordered_json::array();
    for (const lineup::PatchReport& patch : picture->patches) {
        patches.push_back({{"name", patch.name}, {"expected", patch.expected}, {"measured", patch.measured}});
    }
    return {{"card", OrNull(picture->card)},
            {"width", picture->width},
            {"height", picture->height},
            {"bits", picture->bits},
            {"codes", {{"matrix", OrNull(picture->codes.matrix)}, {"range", OrNull(picture->codes.range)}}},
            {"tags",
             {{"matrix", OrNull(picture->tags.matrix)},
              {"primaries", OrNull(picture->tags.primaries)},
              {"transfer", OrNull(picture->tags.transfer)},
              {"range", OrNull(picture->tags.range)},
              {"pixelAspect", OrNull(picture->pixelAspect)}}},
            {"place", PlaceJson(picture->place)},
            {"quality", QualityJson(picture->quality)},
            {"explanation", ExplanationJson(picture->explanation)},
            {"patches", patches}};
}

}  // namespace

std::string CheckJson(const lineup::CheckReport& report) {
    ordered_json faults = ordered_json::array();
    for (const lineup::CheckFault& fault : report.faults) {
        faults.push_back(FaultJson(fault));
    }
    const ordered_json json = {{"schema", "lineup-check/1"},
                               {"source", report.source},
                               {"verdict", lineup::CheckVerdictName(report.verdict)},
                               {"sound", SoundJson(report.sound)},
                               {"picture", PictureJson(report.picture)},
                               {"faults", faults},
                               {"notes", NotesJson(report.notes)}};
    return JsonLine(json);
}

}  // namespace cli
