#include "Host/Lineup/Check/Sound/Decide/SoundReportOf.h"

#include <lineup/Level.h>
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr int kWholeBits = 24;  // what a float holds of a sample

std::ptrdiff_t CountSounding(const Lineup& lineup) {
    return std::ranges::count_if(lineup.inputs,
                                 [](const InputFindings& input) { return input.surveyed.arrival.sounds; });
}

std::optional<int> EffectiveBits(std::uint32_t bits) {
    if (bits == 0 || (bits & HopFeatures::kFiner) != 0) {
        return std::nullopt;
    }
    return std::max(1, kWholeBits - std::countr_zero(bits));
}

std::optional<double> NoiseOf(const InputFindings& input) {
    if (input.toneNoise.Empty() && input.gapNoise.Empty()) {
        return std::nullopt;
    }
    return std::max(input.toneNoise.QuantileDb(0.5), input.gapNoise.QuantileDb(0.5));
}

ChannelReport ChannelReportOf(const Lineup& lineup, std::size_t number, double usualDelay,
                              const RecordingFacts& facts) {
    const InputFindings& input = lineup.inputs[number];
    const Arrival& arrival = input.surveyed.arrival;
    ChannelReport report;
    report.input = static_cast<int>(number);
    report.noise = NoiseOf(input);
    if (input.dc.count > 0) {
        report.dc = input.dc.Mean();
    }
    if (!facts.lossy.value_or(false)) {
        report.effectiveBits = EffectiveBits(input.bits);
    }
    if (!arrival.sounds) {
        return report;
    }
    report.level = DbFromGain(arrival.gain * lineup.reference->Level());
    if (lineup.reference->levelKnown) {
        report.gain = DbFromGain(arrival.gain);
    }
    if (arrival.channel) {
        if (!lineup.reference->Steady()) {
            report.channel = lineup.reference->channels[*arrival.channel];
        }
        if (input.surveyed.polarity != 0 && (!lineup.reference->Steady() || CountSounding(lineup) > 1)) {
            report.polarity = input.surveyed.polarity;
        }
        // Edges alone know a delay well enough only where phases mean nothing, after retiming.
        const bool retimed = lineup.placing.tempo != lineup.placing.pitch;
        if (input.surveyed.exact || (retimed && input.surveyed.hasEdges)) {
            report.delay = (input.surveyed.delay - usualDelay) * facts.rate;
        }
    }
    return report;
}

}  // namespace

double UsualDelay(const Lineup& lineup) {
    std::vector<double> delays;
    std::size_t first = lineup.reference->channels.size();
    double ofFirst = 0;
    for (const InputFindings& input : lineup.inputs) {
        const Arrival& arrival = input.surveyed.arrival;
        if (arrival.channel) {
            delays.push_back(input.surveyed.delay);
            ofFirst = delays.size() == 1 || *arrival.channel < first ? input.surveyed.delay : ofFirst;
            first = std::min(first, *arrival.channel);
        }
    }
    return delays.size() == 2 ? ofFirst : MedianOf(std::move(delays));
}

SoundReport SoundReportOf(const Lineup& lineup, const RecordingFacts& facts) {
    SoundReport report;
    report.expected = lineup.reference->name;
    report.sampleRate = facts.rate;
    report.inputs = static_cast<int>(lineup.inputs.size());
    const double usual = UsualDelay(lineup);
    report.startsAt = facts.startSeconds + std::max(0.0, lineup.startsAt + usual);
    if (!lineup.reference->Steady()) {
        report.cycles = (lineup.endsAt - lineup.startsAt) * lineup.placing.tempo / lineup.reference->cycle;
    }
    const double off = lineup.speed.weight > 0 ? lineup.speed.slopes / lineup.speed.weight : 0;
    const bool corrected = lineup.placing.tempo != lineup.placing.pitch;
    const double ratio = corrected ? lineup.placing.tempo : lineup.placing.pitch * (1 + off);
    if (lineup.reference->pitchKnown) {
        report.speed = SpeedReport{ratio, (ratio - 1) * 1e6};
    }
    for (std::size_t input = 0; input < lineup.inputs.size(); ++input) {
        report.channels.push_back(ChannelReportOf(lineup, input, usual, facts));
    }
    return report;
}

}  // namespace lineup::sound
