#include "Host/Lineup/Check/Sound/Find/Reference.h"

#include <lineup/AudioReader.h>
#include <lineup/ChannelLayout.h>
#include <lineup/Clip.h>
#include <lineup/ToneChoice.h>
#include <lineup/interface/Media/TickTime.h>
#include "Host/Lineup/Check/Sound/Find/ToneSegments.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kSameFrequency = 1e-4;  // relative
constexpr double kRoundHz = 1e-3;        // a frequency this near to a whole number of millihertz is that number
constexpr double kRoundRelative = 2e-6;

using Channels = std::vector<std::vector<float>>;
using Segments = std::vector<std::vector<ToneSegment>>;

Channels RenderInFileOrder(const Clip& clip, std::int64_t count) {
    const auto numChannels = static_cast<std::size_t>(clip.NumChannels());
    Channels sound(numChannels, std::vector<float>(static_cast<std::size_t>(count)));
    const ChannelLayout* const layout = FindChannelLayout(clip.NumChannels());
    std::vector<float*> targets(numChannels);
    for (std::size_t place = 0; place < numChannels; ++place) {
        const auto channel = layout == nullptr ? place : static_cast<std::size_t>(layout->fileOrder[place]);
        targets[channel] = sound[place].data();
    }
    AudioReader(clip).Read(0, count, targets);
    return sound;
}

std::vector<std::string> NamesInFileOrder(std::size_t numChannels) {
    std::vector<std::string> names;
    const ChannelLayout* const layout = FindChannelLayout(static_cast<int>(numChannels));
    for (std::size_t place = 0; place < numChannels; ++place) {
        names.emplace_back(layout == nullptr ? std::to_string(place + 1)
                                             : layout->channels[static_cast<std::size_t>(layout->fileOrder[place])]);
    }
    return names;
}

double FrequencyOf(const ToneSegment& segment, double rateHz) {
    const double frequency = segment.omega / (2 * std::numbers::pi) * rateHz;
    const double rounded = std::round(frequency / kRoundHz) * kRoundHz;
    return std::abs(frequency - rounded) < kRoundRelative * frequency ? rounded : frequency;
}

std::vector<std::size_t> Boundaries(const Segments& segments, std::size_t count) {
    std::vector<std::size_t> all = {0, count};
    for (const auto& channel : segments) {
        for (const ToneSegment& segment : channel) {
            all.push_back(segment.first);
            all.push_back(segment.end);
        }
    }
    std::ranges::sort(all);
    const auto same = std::ranges::unique(all, [](std::size_t a, std::size_t b) { return b - a <= 1; });
    all.erase(same.begin(), same.end());
    return all;
}

RefTone& ToneAt(RefSlot& slot, double frequency, std::size_t numChannels) {
    const auto found = std::ranges::find_if(slot.tones, [frequency](const RefTone& tone) {
        return std::abs(tone.frequency / frequency - 1) < kSameFrequency;
    });
    if (found != slot.tones.end()) {
        return *found;
    }
    slot.tones.push_back({frequency, std::vector<std::complex<double>>(numChannels), false});
    return slot.tones.back();
}

bool IsFloating(double frequency, double cycle) {
    const double periods = frequency * cycle;
    return std::abs(periods - std::round(periods)) > 1e-3;
}

RefSlot MakeSlot(const Segments& segments, std::size_t first, std::size_t end, double rateHz) {
    RefSlot slot{static_cast<double>(first) / rateHz, static_cast<double>(end) / rateHz, {}};
    const std::size_t middle = first + (end - first) / 2;
    for (std::size_t channel = 0; channel < segments.size(); ++channel) {
        for (const ToneSegment& segment : segments[channel]) {
            if (segment.first <= middle && middle < segment.end) {
                ToneAt(slot, FrequencyOf(segment, rateHz), segments.size()).gain[channel] = segment.gain;
            }
        }
    }
    std::ranges::sort(slot.tones, {}, &RefTone::frequency);
    return slot;
}

// A tone that sounds to the end of the cycle and from its start is one.
std::vector<RefBurst> BurstsOf(const std::vector<ToneSegment>& segments, std::size_t channel, std::size_t count,
                               double rateHz) {
    std::vector<RefBurst> bursts;
    for (const ToneSegment& segment : segments) {
        bursts.push_back({channel, FrequencyOf(segment, rateHz), static_cast<double>(segment.first) / rateHz,
                          static_cast<double>(segment.end) / rateHz});
    }
    const bool wraps = !segments.empty() && segments.front().first == 0 && segments.back().end == count &&
                       std::abs(bursts.front().frequency / bursts.back().frequency - 1) < kSameFrequency;
    if (wraps && bursts.size() > 1) {
        bursts.back().off += bursts.front().off;
        bursts.erase(bursts.begin());
    }
    return bursts;
}

Reference MakeFromSound(const Channels& sound, double rateHz) {
    const std::size_t count = sound.front().size();
    Reference reference;
    reference.cycle = static_cast<double>(count) / rateHz;
    Segments segments;
    for (std::size_t channel = 0; channel < sound.size(); ++channel) {
        segments.push_back(FindToneSegments(sound[channel]));
        const auto bursts = BurstsOf(segments.back(), channel, count, rateHz);
        reference.bursts.insert(reference.bursts.end(), bursts.begin(), bursts.end());
    }
    const std::vector<std::size_t> boundaries = Boundaries(segments, count);
    for (std::size_t i = 0; i + 1 < boundaries.size(); ++i) {
        reference.slots.push_back(MakeSlot(segments, boundaries[i], boundaries[i + 1], rateHz));
    }
    return reference;
}

}  // namespace

double Reference::Level() const {
    double level = 0;
    for (const RefSlot& slot : slots) {
        for (const RefTone& tone : slot.tones) {
            for (const std::complex<double>& gain : tone.gain) {
                level = std::max(level, std::abs(gain));
            }
        }
    }
    return level;
}

std::vector<double> Reference::Frequencies() const {
    std::vector<double> frequencies;
    for (const RefBurst& burst : bursts) {
        frequencies.push_back(burst.frequency);
    }
    std::ranges::sort(frequencies);
    const auto same = std::ranges::unique(frequencies, [](double a, double b) { return b / a - 1 < kSameFrequency; });
    frequencies.erase(same.begin(), same.end());
    return frequencies;
}

Reference MakeReference(const std::shared_ptr<const Importer>& importer, const BarsAndToneInfo& settings,
                        double cycleSeconds) {
    const Clip clip(importer, settings);
    const double rateHz = static_cast<double>(clip.SampleRate());
    const auto count = std::max(static_cast<std::int64_t>(std::round(cycleSeconds * rateHz)),
                                static_cast<std::int64_t>(kShortestTone));
    Reference reference = MakeFromSound(RenderInFileOrder(clip, count), rateHz);
    reference.ident = FindIdent(settings);
    reference.name = reference.ident == nullptr ? "tone" : std::string(reference.ident->name);
    reference.channels = NamesInFileOrder(static_cast<std::size_t>(clip.NumChannels()));
    for (RefSlot& slot : reference.slots) {
        for (RefTone& tone : slot.tones) {
            tone.floating = !reference.Steady() && IsFloating(tone.frequency, reference.cycle);
        }
    }
    return reference;
}

std::vector<Reference> MakeIdentReferences(const std::shared_ptr<const Importer>& importer) {
    // Every pitch of a sequence lies far below half of this rate, and the steps of all schedules are whole samples.
    constexpr double kRateHz = 12000;
    constexpr double kTicksPerSecond = static_cast<double>(zelmediatypes::kTicksPerSecond);
    std::vector<Reference> references;
    for (const Ident& ident : Idents()) {
        const BarsAndToneInfo settings =
            MakeSettings(*importer, {.sampleRateHz = kRateHz, .ident = std::string(ident.name)});
        references.push_back(
            MakeReference(importer, settings, static_cast<double>(ident.cycleTicks) / kTicksPerSecond));
    }
    return references;
}

}  // namespace lineup::sound
