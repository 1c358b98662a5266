#include "Host/Lineup/Check/Sound/Measure/Assign.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lineup::sound {

namespace {

using Complex = std::complex<double>;

constexpr double kNoTone = 0.01;        // of the loudest input's gain
constexpr double kAssignSounds = 1e-6;  // full scale
constexpr double kFullLevel = 0.9;      // of the reference's level
constexpr double kTakenAway = 0.02;     // of what is known to sound: a filter has left nothing of the tone
constexpr double kClearlyMoreLike = 0.004;

// Calls visit(tone, cell) for each tone of each slot that was seen at `input`.
template <class Visit>
void ForEachCell(const Cells& cells, const Reference& reference, std::size_t input, const Visit& visit) {
    for (std::size_t slot = 0; slot < reference.slots.size(); ++slot) {
        const std::vector<RefTone>& tones = reference.slots[slot].tones;
        for (std::size_t tone = 0; tone < tones.size(); ++tone) {
            const Cell& cell = cells.At(slot, tone, input);
            if (cell.Seen()) {
                visit(tones[tone], cell);
            }
        }
    }
}

// The only channel that has the tone, or its number of channels.
std::size_t OwnerOf(const RefTone& tone) {
    std::size_t owner = tone.gain.size();
    int owners = 0;
    for (std::size_t channel = 0; channel < tone.gain.size(); ++channel) {
        if (tone.Amplitude(channel) > kAssignSounds) {
            owner = channel;
            ++owners;
        }
    }
    return owners == 1 ? owner : tone.gain.size();
}

double LikenessTo(const Cells& cells, const Reference& reference, std::size_t input, std::size_t channel) {
    double found = 0;
    double sent = 0;
    double both = 0;
    ForEachCell(cells, reference, input, [&](const RefTone& tone, const Cell& cell) {
        const double amplitude = tone.Amplitude(channel);
        found += cell.energy;
        sent += cell.blocks * amplitude * amplitude;
        both += cell.amplitudes * amplitude;
    });
    return found > 0 && sent > 0 ? both / std::sqrt(found * sent) : 0;
}

// By the tones at the sequence's full level, as far as they were seen: what is sent lower may have been changed by
// itself. Tones that it has alone go first.
double GainOf(const Cells& cells, const Reference& reference, std::size_t input, std::size_t channel) {
    std::array<double, 4> found{};
    std::array<double, 4> sent{};
    ForEachCell(cells, reference, input, [&](const RefTone& tone, const Cell& cell) {
        const double amplitude = tone.Amplitude(channel);
        if (amplitude > kAssignSounds) {
            const bool full = amplitude >= kFullLevel * reference.Level();
            const std::size_t kind = (full ? 0U : 2U) + (OwnerOf(tone) == channel ? 0U : 1U);
            found[kind] += cell.amplitudes;
            sent[kind] += cell.blocks * amplitude;
        }
    });
    for (std::size_t kind = 0; kind < sent.size(); ++kind) {
        if (sent[kind] > 0) {
            return found[kind] / sent[kind];
        }
    }
    return 0;
}

// The channel that the input is clearly most like.
void Name(const Cells& cells, const Reference& reference, std::size_t input, Arrival& arrival) {
    double second = 0;
    std::size_t best = 0;
    for (std::size_t channel = 0; channel < reference.channels.size(); ++channel) {
        const double likeness = LikenessTo(cells, reference, input, channel);
        if (likeness > arrival.likeness) {
            second = arrival.likeness;
            arrival.likeness = likeness;
            best = channel;
        } else {
            second = std::max(second, likeness);
        }
    }
    arrival.gain = GainOf(cells, reference, input, best);
    if (arrival.likeness > second + kClearlyMoreLike || reference.channels.size() == 1) {
        arrival.channel = best;
    }
}

void NameTheLast(const Reference& reference, std::vector<Arrival>& arrivals) {
    std::vector<std::size_t> channels;
    for (std::size_t channel = 0; channel < reference.channels.size(); ++channel) {
        if (std::ranges::none_of(arrivals, [channel](const Arrival& arrival) { return arrival.channel == channel; })) {
            channels.push_back(channel);
        }
    }
    const auto isLeft = [](const Arrival& arrival) { return arrival.sounds && !arrival.channel; };
    if (channels.size() == 1 && std::ranges::count_if(arrivals, isLeft) == 1) {
        std::ranges::find_if(arrivals, isLeft)->channel = channels.front();
    }
}

}  // namespace

bool WasHeardAlone(const Cells& cells, const Reference& reference, std::size_t input, std::size_t channel) {
    bool alone = false;
    ForEachCell(cells, reference, input,
                [&](const RefTone& tone, const Cell&) { alone = alone || OwnerOf(tone) == channel; });
    return alone;
}

std::vector<Complex> PartsOf(const Cells& cells, const Reference& reference, std::size_t input) {
    const std::size_t channels = reference.channels.size();
    std::vector<Complex> parts(channels);
    std::vector<double> weights(channels);
    ForEachCell(cells, reference, input, [&](const RefTone& tone, const Cell& cell) {
        const std::size_t owner = OwnerOf(tone);
        if (owner < channels) {
            parts[owner] += cell.sum / tone.gain[owner] * std::norm(tone.gain[owner]);
            weights[owner] += cell.blocks * std::norm(tone.gain[owner]);
        }
    });
    std::vector<bool> alone(channels);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        alone[channel] = weights[channel] > 0;
        parts[channel] = alone[channel] ? parts[channel] / weights[channel] : Complex();
    }
    // What never sounds alone is what the others leave, where it is the only one of that kind.
    ForEachCell(cells, reference, input, [&](const RefTone& tone, const Cell& cell) {
        Complex rest = cell.sum;
        double known = 0;
        std::vector<std::size_t> unknown;
        for (std::size_t channel = 0; channel < channels; ++channel) {
            if (alone[channel]) {
                rest -= cell.blocks * parts[channel] * tone.gain[channel];
                known += cell.blocks * std::abs(parts[channel] * tone.gain[channel]);
            } else if (tone.Amplitude(channel) > kAssignSounds) {
                unknown.push_back(channel);
            }
        }
        if (unknown.size() == 1 && cell.amplitudes >= kTakenAway * known) {
            const std::size_t channel = unknown.front();
            parts[channel] += rest / tone.gain[channel] * std::norm(tone.gain[channel]);
            weights[channel] += cell.blocks * std::norm(tone.gain[channel]);
        }
    });
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (!alone[channel] && weights[channel] > 0) {
            parts[channel] /= weights[channel];
        }
    }
    return parts;
}

std::vector<double> PartDoubts(const Cells& cells, const Reference& reference, std::size_t input) {
    const std::size_t channels = reference.channels.size();
    std::vector<double> doubts(channels);
    std::vector<bool> alone(channels);
    double ofOthers = 0;  // what is left when they are taken off is as uncertain as they are
    for (std::size_t channel = 0; channel < channels; ++channel) {
        // Of the slots that it has alone, or else of all in which it sounds.
        std::array<double, 2> squares{};
        std::array<double, 2> weights{};
        ForEachCell(cells, reference, input, [&](const RefTone& tone, const Cell& cell) {
            if (tone.Amplitude(channel) > kAssignSounds) {
                const std::size_t kind = OwnerOf(tone) == channel ? 0 : 1;
                const double scatter = std::max(0.0, cell.energy - std::norm(cell.sum) / cell.blocks);
                squares[kind] += scatter * std::norm(tone.gain[channel]);
                weights[kind] += cell.blocks * std::norm(tone.gain[channel]);
            }
        });
        alone[channel] = weights[0] > 0;
        const std::size_t kind = alone[channel] ? 0 : 1;
        doubts[channel] = weights[kind] > 0 ? std::sqrt(squares[kind]) / weights[kind] : 0;
        ofOthers += alone[channel] ? doubts[channel] * doubts[channel] : 0;
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        doubts[channel] = alone[channel] ? doubts[channel] : std::sqrt(doubts[channel] * doubts[channel] + ofOthers);
    }
    return doubts;
}

std::vector<Arrival> Assign(const Cells& cells, const Reference& reference, std::size_t inputs) {
    std::vector<Arrival> arrivals(inputs);
    double loudest = 0;
    for (std::size_t input = 0; input < inputs; ++input) {
        Name(cells, reference, input, arrivals[input]);
        loudest = std::max(loudest, arrivals[input].gain);
    }
    for (Arrival& arrival : arrivals) {
        arrival.sounds = arrival.gain > kNoTone * loudest;
        if (!arrival.sounds) {
            arrival.channel.reset();
        }
    }
    NameTheLast(reference, arrivals);
    return arrivals;
}

}  // namespace lineup::sound
