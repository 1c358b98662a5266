#include "Tests/Src/ToneGenerator/IdentModel.h"

#include "Tests/Src/ToneGenerator/ToneModel.h"

#include <algorithm>
#include <ostream>

namespace model {

namespace {

constexpr std::int64_t kTicksPerMs = kTicksPerSecond / 1000;

enum Channel : std::size_t { L, R, Ls, Rs, C, Lfe };

enum class Phase { kOfItsFirstSample, kOfTheRequest };

// One stretch of a cycle in which channels sound, all alike.
struct Sound {
    std::int64_t fromMs;
    std::int64_t toMs;
    std::vector<Channel> channels;
    double frequencyHz;
    double level = 0.125;
    Phase phase = Phase::kOfItsFirstSample;
};

// A tone that never stops, written in one piece.
struct Drone {
    Channel channel;
    double frequencyHz;
};

struct Sequence {
    std::size_t channelCount;
    std::int64_t cycleMs;
    std::vector<std::int64_t> cutsMs;  // where a request is cut into pieces, the cycle's end among them
    std::vector<Sound> sounds;
    std::vector<Drone> drones;
};

std::vector<std::int64_t> Every(std::int64_t stepMs, std::int64_t endMs) {
    std::vector<std::int64_t> cuts;
    for (std::int64_t cut = stepMs; cut <= endMs; cut += stepMs) {
        cuts.push_back(cut);
    }
    return cuts;
}

Sequence Stereo(double frequencyHz) {
    return {2, 3000, {2750, 3000}, {{0, 2750, {L}, frequencyHz}}, {{R, frequencyHz}}};
}

Sequence Multichannel() {
    constexpr auto kBurst = Phase::kOfTheRequest;
    return {6,
            12000,
            Every(500, 12000),
            {
                {0, 3000, {L, R, Ls, Rs, C}, 1000.0},
                {3500, 4000, {L}, 1000.0, 0.125, kBurst},
                {4500, 5000, {C}, 1000.0, 0.125, kBurst},
                {5500, 6000, {R}, 1000.0, 0.125, kBurst},
                {6500, 7000, {Rs}, 1000.0, 0.125, kBurst},
                {7500, 8000, {Ls}, 1000.0, 0.125, kBurst},
                {9000, 12000, {L, R, Ls, Rs, C}, 1000.0},
            },
            {{Lfe, 80.0}}};
}

Sequence Blits() {
    return {6,
            13400,
            Every(100, 13400),
            {
                {0, 600, {L}, 880.0},
                {800, 1400, {R}, 880.0},
                {1600, 2200, {C}, 1320.0},
                {2400, 3000, {Lfe}, 88.5},
                {3200, 3800, {Ls}, 660.0},
                {4000, 4600, {Rs}, 660.0},
                {4800, 9900, {R}, 1000.0},
                {4800, 5800, {L}, 1000.0},
                {6100, 6400, {L}, 1000.0},
                {6700, 7000, {L}, 1000.0},
                {7300, 7600, {L}, 1000.0},
                {7900, 9900, {L}, 1000.0},
                {10200, 13200, {L, R, Ls, Rs, C, Lfe}, 2000.0, 0.0625},
            },
            {}};
}

Sequence SequenceOf(Ident ident) {
    switch (ident) {
        case Ident::kStereo1000:
            return Stereo(1000.0);
        case Ident::kStereo400:
            return Stereo(400.0);
        case Ident::kMultichannel:
            return Multichannel();
        case Ident::kBlits:
            return Blits();
    }
    return {};
}

// `count` samples of a tone, or of its level.
std::vector<float> ToneOrLevel(const Request& request, std::int64_t phaseTicks, double frequencyHz, double level,
                               std::size_t count) {
    if (request.peakMode) {
        return std::vector<float>(count, static_cast<float>(level));
    }
    return Tone(request.sampleTicks, phaseTicks, frequencyHz, level, count);
}

// The index after the last sample of the piece that begins with sample `first`: a sample belongs to it while
// its whole length lies before the cut, and the first always does.
std::int64_t PieceEnd(const Request& request, std::int64_t first, std::int64_t cutTicks) {
    std::int64_t next = first + 1;
    while (next < request.count && request.startTicks + (next + 1) * request.sampleTicks <= cutTicks) {
        ++next;
    }
    return next;
}

}  // namespace

std::string Name(Ident ident) {
    switch (ident) {
        case Ident::kStereo1000:
            return "Stereo1000";
        case Ident::kStereo400:
            return "Stereo400";
        case Ident::kMultichannel:
            return "Multichannel";
        case Ident::kBlits:
            return "Blits";
    }
    return {};
}

std::int64_t CycleTicks(Ident ident) {
    return SequenceOf(ident).cycleMs * kTicksPerMs;
}

std::size_t ChannelCount(Ident ident) {
    return SequenceOf(ident).channelCount;
}

std::ostream& operator<<(std::ostream& out, const Request& request) {
    return out << "start " << request.startTicks << ", " << request.count << " samples " << request.sampleTicks
               << " apart" << (request.peakMode ? ", peaks" : "");
}

std::vector<std::vector<float>> Render(Ident ident, const Request& request) {
    const Sequence sequence = SequenceOf(ident);
    const auto size = static_cast<std::size_t>(std::max<std::int64_t>(request.count, 0));
    std::vector<std::vector<float>> samples(sequence.channelCount, std::vector<float>(size, 0.0F));

    for (std::int64_t first = 0; first < request.count;) {
        const std::int64_t time = request.startTicks + first * request.sampleTicks;
        const std::int64_t cycleTicks = sequence.cycleMs * kTicksPerMs;
        const std::int64_t cycleStart = FloorDivide(time, cycleTicks) * cycleTicks;
        const std::int64_t intoCycle = time - cycleStart;
        const auto after = [intoCycle](std::int64_t ms) { return ms * kTicksPerMs > intoCycle; };
        const std::int64_t cut = cycleStart + *std::ranges::find_if(sequence.cutsMs, after) * kTicksPerMs;
        const std::int64_t end = PieceEnd(request, first, cut);

        for (const Sound& sound : sequence.sounds) {
            if (after(sound.fromMs) || !after(sound.toMs)) {
                continue;
            }
            const std::int64_t phaseTicks = sound.phase == Phase::kOfTheRequest ? request.startTicks : time;
            const std::vector<float> piece =
                ToneOrLevel(request, phaseTicks, sound.frequencyHz, sound.level, static_cast<std::size_t>(end - first));
            for (const Channel channel : sound.channels) {
                std::ranges::copy(piece, samples[channel].begin() + first);
            }
        }
        first = end;
    }
    for (const Drone& drone : sequence.drones) {
        samples[drone.channel] = ToneOrLevel(request, request.startTicks, drone.frequencyHz, 0.125, size);
    }
    return samples;
}

}  // namespace model
