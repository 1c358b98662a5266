#include "Apps/lineup/Reports/ClipText.h"

#include <lineup/ChannelLayout.h>
#include <lineup/Idents.h>
#include <lineup/Level.h>
#include "Host/Interface/Media/TickTime.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

// The four bytes of `code` from the one at `firstShift` on; bytes that are not printable show as dots.
std::string FourCharacters(std::uint32_t code, unsigned firstShift) {
    std::string text;
    for (unsigned i = 0; i < 4; ++i) {
        const unsigned shift = firstShift == 0 ? 8 * i : firstShift - 8 * i;
        const auto byte = static_cast<unsigned char>(code >> shift);
        text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    return text;
}

lineup::BarsAndToneInfo SettingsOf(const lineup::Clip& clip) {
    return clip.Settings().value_or(lineup::BarsAndToneInfo{});
}

double Seconds(std::int64_t ticks) {
    return static_cast<double>(ticks) / static_cast<double>(zelmediatypes::kTicksPerSecond);
}

double DurationSeconds(std::int64_t samples, float rateHz) {
    return static_cast<double>(samples) / static_cast<double>(rateHz);
}

double DurationSeconds(const lineup::Clip& clip) {
    return DurationSeconds(clip.DurationSamples(), clip.SampleRate());
}

std::string LengthText(std::int64_t samples, float rateHz) {
    return fmt::format("{:.3f} s ({} samples)", DurationSeconds(samples, rateHz), samples);
}

nlohmann::ordered_json SignalJson(const lineup::BarsAndToneInfo& settings) {
    if (const lineup::Ident* const ident = lineup::FindIdent(settings)) {
        return {{"kind", "ident"},
                {"name", ident->name},
                {"title", ident->title},
                {"cycleSeconds", Seconds(ident->cycleTicks)}};
    }
    if (lineup::AsksForUnknownIdent(settings)) {
        return {{"kind", "unknown ident"}, {"format", static_cast<std::uint32_t>(settings.identifierFormat)}};
    }
    return {{"kind", "steady"},
            {"frequencyHz", settings.frequency},
            {"gain", settings.amplitude},
            {"levelDb", lineup::DbFromGain(static_cast<double>(settings.amplitude))}};
}

}  // namespace

std::string FileTypeText(std::uint32_t code) {
    return FourCharacters(code, 24);
}

std::string PixelFormatText(std::uint32_t code) {
    return FourCharacters(code, 0);
}

std::string SoundText(const lineup::Clip& clip) {
    const lineup::ChannelLayout* const layout = lineup::FindChannelLayout(clip.NumChannels());
    if (layout == nullptr) {
        return fmt::format("{} channels, {:g} Hz", clip.NumChannels(), clip.SampleRate());
    }
    return fmt::format("{} ({}), {:g} Hz", layout->name, fmt::join(layout->channels, " "), clip.SampleRate());
}

std::string SignalText(const lineup::Clip& clip) {
    const lineup::BarsAndToneInfo settings = SettingsOf(clip);
    if (const lineup::Ident* const ident = lineup::FindIdent(settings)) {
        return fmt::format("{}, a cycle of {:g} s", ident->title, Seconds(ident->cycleTicks));
    }
    if (lineup::AsksForUnknownIdent(settings)) {
        return lineup::UnknownIdentText(settings);
    }
    return fmt::format("{:g} Hz at {:.2f} dBFS peak", settings.frequency,
                       lineup::DbFromGain(static_cast<double>(settings.amplitude)));
}

std::string LengthText(const lineup::Clip& clip) {
    return LengthText(clip.DurationSamples(), clip.SampleRate());
}

nlohmann::ordered_json ClipJson(const lineup::Clip& clip) {
    nlohmann::ordered_json json = {{"numChannels", clip.NumChannels()}};
    if (const lineup::ChannelLayout* const layout = lineup::FindChannelLayout(clip.NumChannels())) {
        json["layout"] = layout->name;
        json["channels"] = layout->channels;
    }
    json["sampleRateHz"] = clip.SampleRate();
    json["durationSamples"] = clip.DurationSamples();
    json["durationSeconds"] = DurationSeconds(clip);
    json["signal"] = SignalJson(SettingsOf(clip));
    return json;
}

std::string SoundText(const lineup::ClipDescription& clip) {
    return clip.hasAudio ? fmt::format("{} channels, {:g} Hz", clip.numChannels, clip.sampleRate) : "none";
}

std::string LengthText(const lineup::ClipDescription& clip) {
    return LengthText(clip.durationSamples, clip.sampleRate);
}

nlohmann::ordered_json ClipJson(const lineup::ClipDescription& clip) {
    nlohmann::ordered_json json = {{"hasVideo", clip.hasVideo}, {"hasAudio", clip.hasAudio}};
    if (clip.hasAudio) {
        json["numChannels"] = clip.numChannels;
        json["sampleRateHz"] = clip.sampleRate;
        json["durationSamples"] = clip.durationSamples;
        json["durationSeconds"] = DurationSeconds(clip.durationSamples, clip.sampleRate);
    }
    return json;
}

}  // namespace cli
