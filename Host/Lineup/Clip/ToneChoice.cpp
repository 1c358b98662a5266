#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/Idents.h>
#include <lineup/Importer.h>
#include <lineup/Level.h>
#include <lineup/Limits.h>
#include <lineup/ToneChoice.h>
#include <lineup/UsageError.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>
#include <span>
#include <string_view>
#include <vector>

namespace lineup {

namespace {

constexpr double kLowestFrequencyHz = 1;

float CheckSampleRate(double rateHz) {
    const bool inRange = rateHz >= kLowestSampleRateHz && rateHz <= kHighestSampleRateHz;  // false for not-a-number
    if (!inRange || rateHz != std::floor(rateHz)) {
        throw UsageError(
            "sample-rate", fmt::format("{}", rateHz),
            fmt::format("must be a whole number of Hz from {} to {}", kLowestSampleRateHz, kHighestSampleRateHz));
    }
    return static_cast<float>(rateHz);
}

float CheckFrequency(double frequencyHz, float sampleRateHz) {
    const auto frequency = static_cast<float>(frequencyHz);
    const bool inRange = frequencyHz >= kLowestFrequencyHz && frequency < sampleRateHz / 2;  // false for not-a-number
    if (!inRange) {
        throw UsageError("frequency", fmt::format("{}", frequencyHz),
                         fmt::format("must be {} Hz or more, and below {:g} Hz: at half the sample rate a sine is next "
                                     "to silent",
                                     kLowestFrequencyHz, sampleRateHz / 2));
    }
    return frequency;
}

float CheckLevel(double levelDb) {
    const bool inRange = levelDb >= kSilenceDb && levelDb <= 0;
    if (!inRange) {
        throw UsageError("level", fmt::format("{}", levelDb),
                         fmt::format("must be {} to 0 dBFS; 0 is full scale, {} is silence", kSilenceDb, kSilenceDb));
    }
    return levelDb == kSilenceDb ? 0.0F : static_cast<float>(GainFromDb(levelDb));
}

template <class Row>
std::string Names(std::span<const Row> rows) {
    std::vector<std::string_view> names;
    for (const Row& row : rows) {
        names.push_back(row.name);
    }
    return fmt::format("must be {}", fmt::join(names, ", "));
}

const ChannelLayout& CheckLayout(const std::string& name) {
    const ChannelLayout* const layout = FindChannelLayout(name);
    if (layout == nullptr) {
        throw UsageError("channels", name, Names(ChannelLayouts()));
    }
    return *layout;
}

const Ident& CheckIdent(const std::string& name) {
    const Ident* const ident = FindIdent(name);
    if (ident == nullptr) {
        throw UsageError("ident", name, Names(Idents()));
    }
    return *ident;
}

void RefuseSteadyToneValue(const char* option, const std::optional<double>& value, const Ident& ident) {
    if (value) {
        throw UsageError(option, fmt::format("{}", *value),
                         fmt::format("has no effect on the {}, whose frequencies and levels are fixed: leave it out, "
                                     "or leave out ident for a steady tone",
                                     ident.title));
    }
}

void ApplyIdent(const ToneChoice& choice, BarsAndToneInfo& settings) {
    const Ident& ident = CheckIdent(*choice.ident);
    RefuseSteadyToneValue("frequency", choice.frequencyHz, ident);
    RefuseSteadyToneValue("level", choice.levelDb, ident);
    if (choice.channels && CheckLayout(*choice.channels).channels.size() != ident.numChannels) {
        throw UsageError("channels", *choice.channels,
                         fmt::format("the {} names the channels of {}: leave channels out, or choose another ident",
                                     ident.title, FindChannelLayout(static_cast<int>(ident.numChannels))->name));
    }
    settings.numChannels = ident.numChannels;
    settings.identifyChannels = 1;
    settings.identifierFormat = ident.format;
}

}  // namespace

void CheckTone(const BarsAndToneInfo& settings) {
    const bool isSteady = settings.identifyChannels != 1;
    if (isSteady && std::abs(settings.frequency) >= settings.sampleRate / 2) {
        static_cast<void>(CheckFrequency(static_cast<double>(settings.frequency), settings.sampleRate));
    }
}

BarsAndToneInfo MakeSettings(const Importer& importer, const ToneChoice& choice) {
    const float rateHz = choice.sampleRateHz ? CheckSampleRate(*choice.sampleRateHz) : Clip::kHostSampleRate;
    BarsAndToneInfo settings = importer.DefaultSettings(rateHz);
    if (choice.channels) {
        settings.numChannels = static_cast<std::uint32_t>(CheckLayout(*choice.channels).channels.size());
    }
    if (choice.ident) {
        ApplyIdent(choice, settings);
    }
    if (choice.frequencyHz) {
        settings.frequency = CheckFrequency(*choice.frequencyHz, rateHz);
    }
    if (choice.levelDb) {
        settings.amplitude = CheckLevel(*choice.levelDb);
    }
    if (choice.channels || choice.ident) {
        settings.channelType = ChannelTypeFor(settings.numChannels);
    }
    return settings;
}

}  // namespace lineup
