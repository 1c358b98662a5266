#include "Host/Lineup/Check/Sound/Measure/WanderFit.h"

#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <optional>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kLeastSwing = 40e-6;   // relative: the speed, median
constexpr double kLeastDepth = 150e-6;  // the same, of one frequency
constexpr double kLowestHertz = 0.2;
constexpr double kHighestHertz = 8;
constexpr double kHertzStep = 0.04;
constexpr double kLeastHertzStep = 2e-6;
constexpr double kExplained = 0.5;  // of the squares
constexpr std::size_t kFewestTurns = 40;
constexpr int kWanderRounds = 4;
constexpr double kOwnAmplitude = 0.15;  // of the level that was sent
constexpr double kFarOff = 5;           // times what most are off: blocks in which something else happens

// How much faster the recording plays from one block to the next than the placing has it.
struct SpeedAt {
    double second;
    double speed;
    double block;  // s
};

// What all inputs and tones of a block have together, where one sounds.
std::optional<SpeedAt> SpeedOfBlock(const SlotSound& sound, const std::vector<RefTone>& tones, double pitch,
                                    double least, std::size_t block) {
    double weights = 0;
    SpeedAt mean{0, 0, sound.step};
    for (std::size_t m = 0; m < tones.size(); ++m) {
        const double omega = kTurn * tones[m].frequency * pitch;
        for (const InputSlot& input : sound.inputs) {
            if (block >= input.there.size() || !input.there[block] || !input.there[block - 1]) {
                continue;
            }
            const std::complex<double> now = input.gains[m][block];
            const std::complex<double> before = input.gains[m][block - 1];
            if (std::abs(now) > least && std::abs(before) > least) {
                const double weight = std::norm(now) * omega * omega;
                mean.second += weight * (input.firstMiddle + (static_cast<double>(block) - 0.5) * sound.step);
                mean.speed += weight * std::arg(now / before) / (omega * sound.step);
                weights += weight;
            }
        }
    }
    if (weights <= 0) {
        return std::nullopt;
    }
    mean.second /= weights;
    mean.speed /= weights;
    return mean;
}

std::vector<SpeedAt> SpeedsOf(SlotMeter& meter, const Reference& reference, double pitch,
                              std::span<const SlotNumber> slots) {
    std::vector<SpeedAt> speeds;
    for (const SlotNumber& number : slots) {
        const SlotSound sound = meter.Measure(number);
        const std::size_t blocks = sound.inputs.empty() ? 0 : sound.inputs.front().there.size();
        for (std::size_t block = 1; block < blocks; ++block) {
            const auto speed = SpeedOfBlock(sound, reference.slots[number.slot].tones, pitch,
                                            kOwnAmplitude * reference.Level(), block);
            if (speed) {
                speeds.push_back(*speed);
            }
        }
    }
    return speeds;
}

// A swing and a constant: how well they explain the speeds.
struct Swing {
    double hertz = 0;
    double sine = 0;  // of the speed
    double cosine = 0;
    double constant = 0;
    double squares = 0;  // that are left

    [[nodiscard]] double At(const SpeedAt& speed) const {
        const double angle = kTurn * hertz * speed.second;
        return constant + Seen(hertz, speed.block) * (sine * std::sin(angle) + cosine * std::cos(angle));
    }

    // What is left of a swing where blocks average it, and their difference once more.
    static double Seen(double hertz, double block) {
        const double half = kTurn / 2 * hertz * block;
        return half < 1e-6 ? 1 : std::pow(std::sin(half) / half, 2);
    }
};

Swing FitSwing(std::span<const SpeedAt> speeds, double hertz) {
    std::array<std::array<double, 4>, 3> rows{};  // the last of each is the sum with the speeds
    double squares = 0;
    for (const SpeedAt& speed : speeds) {
        const double angle = kTurn * hertz * speed.second;
        const double seen = Swing::Seen(hertz, speed.block);
        const std::array<double, 4> functions = {seen * std::sin(angle), seen * std::cos(angle), 1, speed.speed};
        for (std::size_t i = 0; i < rows.size(); ++i) {
            for (std::size_t k = 0; k < functions.size(); ++k) {
                rows[i][k] += functions[i] * functions[k];
            }
        }
        squares += speed.speed * speed.speed;
    }
    const std::array<double, 3> sums = {rows[0][3], rows[1][3], rows[2][3]};
    for (std::size_t i = 0; i < rows.size(); ++i) {  // Gauss and Jordan
        for (std::size_t row = 0; row < rows.size(); ++row) {
            const double factor = row == i || rows[i][i] == 0 ? 0 : rows[row][i] / rows[i][i];
            for (std::size_t k = 0; k < rows[row].size(); ++k) {
                rows[row][k] -= factor * rows[i][k];
            }
        }
    }
    std::array<double, 3> weights{};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        weights[i] = rows[i][i] == 0 ? 0 : rows[i][3] / rows[i][i];
        squares -= weights[i] * sums[i];
    }
    return {hertz, weights[0], weights[1], weights[2], squares};
}

Swing BestSwing(std::span<const SpeedAt> speeds) {
    Swing best = FitSwing(speeds, kLowestHertz);
    for (int step = 0; kLowestHertz + step * kHertzStep < kHighestHertz; ++step) {
        const Swing swing = FitSwing(speeds, kLowestHertz + step * kHertzStep);
        best = swing.squares < best.squares ? swing : best;
    }
    // Between the steps.
    double step = kHertzStep;
    while (step > kLeastHertzStep) {
        step /= 2;
        for (const double hertz : {best.hertz - step, best.hertz + step}) {
            const Swing swing = FitSwing(speeds, hertz);
            best = swing.squares < best.squares ? swing : best;
        }
    }
    return best;
}

double MedianOff(std::span<const SpeedAt> speeds, const Swing& swing) {
    std::vector<double> off;
    for (const SpeedAt& speed : speeds) {
        off.push_back(std::abs(speed.speed - swing.At(speed)));
    }
    return MedianOf(std::move(off));
}

// The swing that explains most of the speeds, but for those of single blocks in which time jumps.
std::optional<Swing> Explain(std::vector<SpeedAt> speeds) {
    if (speeds.size() < kFewestTurns || MedianOff(speeds, {}) < kLeastSwing) {
        return std::nullopt;
    }
    Swing swing;
    for (int round = 0; round < 2; ++round) {
        swing = BestSwing(speeds);
        const double most = kFarOff * MedianOff(speeds, swing) + kLeastSwing;
        std::erase_if(speeds, [&](const SpeedAt& speed) { return std::abs(speed.speed - swing.At(speed)) > most; });
        if (speeds.size() < kFewestTurns) {
            return std::nullopt;
        }
    }
    swing = BestSwing(speeds);
    double squares = 0;
    for (const SpeedAt& speed : speeds) {
        squares += std::pow(speed.speed - swing.constant, 2);
    }
    const bool explains = swing.squares < (1 - kExplained) * squares;
    return explains && std::hypot(swing.sine, swing.cosine) > kLeastDepth ? std::optional(swing) : std::nullopt;
}

}  // namespace

Placing TuneWander(const History& history, const Reference& reference, const Placing& placing,
                   std::span<const double> delays, std::span<const SlotNumber> slots) {
    Placing tuned = placing;
    if (history.lossy || placing.tempo != placing.pitch) {
        return tuned;
    }
    SlotMeter meter(history, reference);
    std::optional<Swing> whole;
    for (int round = 0; round < kWanderRounds; ++round) {
        meter.Place(tuned, delays);
        std::vector<SpeedAt> speeds = SpeedsOf(meter, reference, tuned.pitch, slots);
        if (whole) {
            for (SpeedAt& speed : speeds) {
                Swing taken = *whole;
                taken.constant = 0;
                speed.speed += taken.At(speed);
            }
        }
        const auto swing = Explain(std::move(speeds));
        if (!swing) {
            return whole ? tuned : placing;
        }
        whole = swing;
        // Where it plays too fast, what comes is ever earlier.
        const double omega = kTurn * swing->hertz;
        tuned.wanders = {{swing->hertz, -swing->cosine / omega, swing->sine / omega}};
    }
    return tuned;
}

}  // namespace lineup::sound
