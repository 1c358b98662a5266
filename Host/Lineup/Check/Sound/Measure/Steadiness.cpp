#include "Host/Lineup/Check/Sound/Measure/Steadiness.h"

#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kNoiseMargin = 9;  // squared: what is counted as noise beyond what the amplitude shows
constexpr std::size_t kFewestSteps = 4;

}  // namespace

double Steadiness::Wander() const {
    return squares.Empty() ? 0 : std::pow(10, squares.QuantileDb(0.5) / 20);
}

void AddSteadiness(const SlotSound& sound, const Reference& reference, double pitch, std::size_t input,
                   std::size_t tone, Steadiness& steadiness) {
    const InputSlot& slot = sound.inputs[input];
    const double omega = kTurn * reference.slots[sound.number.slot].tones[tone].frequency * pitch;
    double phases = 0;
    double amplitudes = 0;
    std::size_t steps = 0;
    std::vector<double> turns;
    for (std::size_t block = 1; block < slot.gains[tone].size(); ++block) {
        const std::complex<double> before = slot.gains[tone][block - 1];
        const std::complex<double> now = slot.gains[tone][block];
        if (!slot.there[block] || !slot.there[block - 1] || std::abs(before) == 0) {
            continue;
        }
        turns.push_back(std::arg(now / before));
        const double grows = std::abs(now) / std::abs(before) - 1;
        amplitudes += grows * grows;
        ++steps;
    }
    if (steps < kFewestSteps) {
        return;
    }
    for (const double turn : turns) {
        phases += turn * turn;
    }
    // A mean turn is another speed of the whole slot: it counts too.
    const double scale = 1 / (omega * sound.step * omega * sound.step);
    const auto count = static_cast<double>(steps);
    steadiness.squares.Add(std::max(0.0, phases - kNoiseMargin * amplitudes) * scale / count, count);
}

}  // namespace lineup::sound
