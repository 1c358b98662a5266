#include "Bridges/MLT/ClipChoice.h"

#include <lineup/ChannelLayout.h>
#include <lineup/Idents.h>
#include "Bridges/MLT/Properties.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

namespace bridge {

namespace {

enum PropertyIndex : std::size_t {
    kCardIndex,
    kSoundIndex,
    kFrequencyIndex,
    kLevelIndex,
    kChannelsIndex,
    kMatrixIndex,
    kDepthIndex
};

const char* NameOf(std::size_t index) {
    switch (index) {
        case kCardIndex:
            return CardProperty().name;
        case kSoundIndex:
            return SoundProperty().name;
        case kFrequencyIndex:
            return kFrequency.name;
        case kLevelIndex:
            return kLevel.name;
        case kMatrixIndex:
            return MatrixProperty().name;
        case kDepthIndex:
            return DepthProperty().name;
        default:
            return ChannelsProperty().name;
    }
}

// A framework set to a language with decimal commas writes numbers with them.
std::optional<double> ParseNumber(std::string text) {
    std::ranges::replace(text, ',', '.');
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || std::isnan(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> ReadNumber(const NumberProperty& property, const std::string& text, const Complain& complain) {
    if (text.empty()) {
        return std::nullopt;
    }
    const std::optional<double> value = ParseNumber(text);
    const double used = std::clamp(value.value_or(property.fallback), property.lowest, property.highest);
    if (value != used) {
        complain(fmt::format("{} {}: must be {} to {} {}; {} is used", property.name, text, property.lowest,
                             property.highest, property.unit, used));
    }
    return used;
}

std::string ReadName(const NameProperty& property, const std::string& text, const Complain& complain) {
    if (text.empty() || std::ranges::find(property.names, text) != property.names.end()) {
        return text.empty() ? std::string(property.names.front()) : text;
    }
    complain(fmt::format("{} {}: must be {}; {} is used", property.name, text, fmt::join(property.names, ", "),
                         property.names.front()));
    return std::string(property.names.front());
}

// An ident decides on the channels, and has frequencies and levels of its own. Editors store every property
// of a clip, so those of an earlier tone are not a mistake.
void KeepIdentAlone(lineup::ToneChoice& tone, const Complain& complain) {
    const lineup::Ident& ident = *lineup::FindIdent(*tone.ident);
    const auto* const layout = lineup::FindChannelLayout(static_cast<int>(ident.numChannels));
    if (tone.channels && *tone.channels != layout->name) {
        complain(fmt::format("{} {}: the {} names the channels of {}; {} is used", ChannelsProperty().name,
                             *tone.channels, ident.title, layout->name, layout->name));
    }
    tone.channels.reset();
    tone.frequencyHz.reset();
    tone.levelDb.reset();
}

}  // namespace

std::array<std::string_view, std::tuple_size_v<PropertyTexts>> PropertyNames() {
    std::array<std::string_view, std::tuple_size_v<PropertyTexts>> names;
    for (std::size_t i = 0; i < names.size(); ++i) {
        names.at(i) = NameOf(i);
    }
    return names;
}

bool UpdateTexts(mlt_properties properties, PropertyTexts& texts) {
    bool changed = false;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const char* const found = mlt_properties_get(properties, NameOf(i));
        const char* const text = found == nullptr ? "" : found;
        if (texts.at(i) != text) {
            texts.at(i) = text;
            changed = true;
        }
    }
    return changed;
}

ClipChoice MakeChoice(const PropertyTexts& texts, const Complain& complain) {
    ClipChoice choice;
    choice.card = std::ranges::find(lineup::kCardNames, ReadName(CardProperty(), texts[kCardIndex], complain),
                                    &lineup::CardName::name)
                      ->card;
    choice.inMatrixOfProfile = ReadName(MatrixProperty(), texts[kMatrixIndex], complain) == "profile";
    choice.depthBits = std::stoi(ReadName(DepthProperty(), texts[kDepthIndex], complain));
    choice.tone.frequencyHz = ReadNumber(kFrequency, texts[kFrequencyIndex], complain);
    choice.tone.levelDb = ReadNumber(kLevel, texts[kLevelIndex], complain);
    const std::string channels = ReadName(ChannelsProperty(), texts[kChannelsIndex], complain);
    if (channels != ChannelsProperty().names.front()) {
        choice.tone.channels = channels;
    }
    const std::string sound = ReadName(SoundProperty(), texts[kSoundIndex], complain);
    if (sound != SoundProperty().names.front()) {
        choice.tone.ident = sound;
        KeepIdentAlone(choice.tone, complain);
    }
    return choice;
}

lineup::BarsAndToneInfo MakeSettings(const lineup::Importer& importer, const ClipChoice& choice, int rateHz,
                                     const Complain& complain) {
    lineup::ToneChoice tone = choice.tone;
    tone.sampleRateHz = rateHz;
    const double half = rateHz / 2.0;
    if (tone.frequencyHz && static_cast<float>(*tone.frequencyHz) >= static_cast<float>(half)) {
        complain(
            fmt::format("{} {}: must be below {} {}, half the sample rate of {} Hz, where a sine is next to "
                        "silent; {} is used",
                        kFrequency.name, *tone.frequencyHz, half, kFrequency.unit, rateHz, half - 1));
        tone.frequencyHz = half - 1;
    }
    return lineup::MakeSettings(importer, tone);
}

}  // namespace bridge
