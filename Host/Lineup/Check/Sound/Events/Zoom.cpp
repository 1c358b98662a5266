#include "Host/Lineup/Check/Sound/Events/Zoom.h"

#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <cmath>

namespace lineup::sound {

namespace {

constexpr double kMostlyTone = 0.7;   // of what is heard
constexpr double kSoundsAgain = 0.5;  // of the tone: gain that follows the sound may have moved it
constexpr double kLeastOfDip = 0.4;   // of the tone: below that it is not the gain that dips
constexpr double kMostOfDip = 2.5;
constexpr double kLeftOfDip = 0.3;  // of what departs from the tone: the rest is the tone itself, louder or softer

}  // namespace

Zoom::Zoom(const History& history, const Reference& reference, const SlotMeter& meter, const SlotSound& sound,
           std::size_t input, double zero)
    : mNarrow(&history.narrow[input]),
      mRate(history.grid.NarrowRate()),
      mTones(&reference.slots[sound.number.slot].tones),
      mPlacing(&meter.Where()),
      mDelay(meter.Delay(input)),
      mZero(zero) {}

void Zoom::Load(double first, double end) {
    mFirst = std::max(mNarrow->First(), static_cast<std::int64_t>(std::ceil(first * mRate)));
    const std::int64_t last = std::min(mNarrow->End(), static_cast<std::int64_t>(end * mRate));
    mSamples = mNarrow->Get(mFirst, std::max(mFirst, last));
}

std::optional<double> Zoom::Departs(const Gains& gains, double clear, bool last) const {
    for (std::size_t i = 0; i < mSamples.size(); ++i) {
        const std::size_t n = last ? mSamples.size() - 1 - i : i;
        if (std::abs(Heard(n) - At(gains, n)) > clear) {
            return SecondOf(n);
        }
    }
    return std::nullopt;
}

double Zoom::PowerWithin(double first, double end) const {
    double sum = 0;
    double count = 0;
    for (std::size_t n = 0; n < mSamples.size(); ++n) {
        if (SecondOf(n) >= first && SecondOf(n) <= end) {
            sum += Heard(n) * Heard(n);
            ++count;
        }
    }
    return count > 0 ? sum / count : 1;
}

std::optional<std::pair<double, double>> Zoom::SilenceWithin(double amplitude, double frequency) const {
    const auto length = static_cast<std::size_t>(kSilenceWindow / frequency * mRate);
    bool sounded = false;
    std::optional<double> begins;
    for (std::size_t n = 0; n + length <= mSamples.size(); n += length) {
        const auto [level, tone] = LevelsOf(n, length, frequency);
        if (sounded && level < amplitude * kSilentOfTone / 2) {
            begins = begins.value_or(SecondOf(n));
        } else if (tone > amplitude * kSoundsAgain && tone > level * kMostlyTone) {
            if (begins) {
                return std::pair(*begins, SecondOf(n));
            }
            sounded = true;
        }
    }
    return std::nullopt;
}

std::optional<double> Zoom::GainWithin(const Gains& gains, double first, double end, double window) const {
    const auto length = static_cast<std::size_t>(window * mRate);
    double departs = 0;
    double left = 0;
    double farthest = 1;
    for (std::size_t begin = 0; length > 0 && begin + length <= mSamples.size(); begin += length) {
        if (SecondOf(begin + length) < first || SecondOf(begin) > end) {
            continue;
        }
        double power = 0;
        double along = 0;
        double energy = 0;
        for (std::size_t n = begin; n < begin + length; ++n) {
            const double tone = At(gains, n);
            const double heard = Heard(n);
            power += tone * tone;
            along += tone * heard;
            energy += heard * heard;
        }
        const double gain = power > 0 ? along / power : 0;
        if (gain < kLeastOfDip || gain > kMostOfDip) {
            return std::nullopt;
        }
        departs += energy - 2 * along + power;
        left += energy - gain * along;
        farthest = std::abs(std::log(gain)) > std::abs(std::log(farthest)) ? gain : farthest;
    }
    return departs > 0 && left < kLeftOfDip * departs ? std::optional(farthest) : std::nullopt;
}

double Zoom::FarthestFrom(const Gains& gains) const {
    double farthest = 0;
    for (std::size_t n = 0; n < mSamples.size(); ++n) {
        farthest = std::max(farthest, std::abs(Heard(n) - At(gains, n)));
    }
    return farthest;
}

// The amplitude that all that is heard would have as one tone, and that of the tone of this frequency.
std::pair<double, double> Zoom::LevelsOf(std::size_t first, std::size_t length, double frequency) const {
    double squares = 0;
    std::complex<double> tone;
    for (std::size_t n = first; n < first + length; ++n) {
        squares += Heard(n) * Heard(n);
        tone += Heard(n) * std::polar(1.0, -kTurn * frequency * static_cast<double>(n) / mRate);
    }
    const auto count = static_cast<double>(length);
    return {std::sqrt(2 * squares / count), 2 * std::abs(tone) / count};
}

double Zoom::SecondOf(std::size_t n) const {
    return static_cast<double>(mFirst + static_cast<std::int64_t>(n)) / mRate;
}

double Zoom::At(const Gains& gains, std::size_t n) const {
    const double second = SecondOf(n);
    double sum = 0;
    for (std::size_t tone = 0; tone < gains.size(); ++tone) {
        const double turns =
            (*mTones)[tone].frequency * mPlacing->pitch * (second - mDelay - mPlacing->StartAt(second));
        sum += (gains[tone] * std::polar(1.0, kTurn * std::remainder(turns, 1.0))).imag();
    }
    return sum;
}

}  // namespace lineup::sound
