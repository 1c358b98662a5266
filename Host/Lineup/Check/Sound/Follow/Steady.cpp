#include "Host/Lineup/Check/Sound/Follow/Steady.h"

#include <lineup/Level.h>
#include <lineup/ToneChoice.h>
#include "Host/Lineup/Check/Sound/Events/Events.h"
#include "Host/Lineup/Check/Sound/Find/Speeds.h"
#include "Host/Lineup/Check/Sound/Measure/Tune.h"
#include "Host/Lineup/Check/Sound/Measure/WanderFit.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kLongTone = 3;         // s: what nobody asked for must last
constexpr double kMostOfAll = 0.8;      // of the recording
constexpr double kShortTone = 1;        // s: what somebody asked for, or all that there is
constexpr double kSteadySame = 0.003;   // relative pitch
constexpr double kFaint = 1e-4;         // full scale
constexpr double kBesideTone = 0.1;     // of its level: another pitch at that level makes it music
constexpr double kPureInAuto = 0.0025;  // residual over the tone's power, where nobody asked for a tone
constexpr double kPureEnough = 0.5;
constexpr double kSteadySilent = 0.01;  // of the loudest input
constexpr double kSteadySlot = 1;       // s: a steady tone is measured in slots of this length
constexpr double kClockOff = 100;       // ppm: how far a clock may be off
constexpr double kLowestWholeHz = 20;
constexpr std::array kLineupTones = {1000.0, 400.0, 440.0, 997.0};  // Hz: those that are in use

bool MayBe(const ToneRun& run, const Expectation& expected) {
    const double ratio = expected.frequencyHz ? run.frequency / *expected.frequencyHz : 1;
    return run.amplitude > kFaint && ratio > kSlowest && ratio < kFastest;
}

bool SamePitch(const ToneRun& a, const ToneRun& b) {
    return std::abs(a.frequency / b.frequency - 1) < kSteadySame;
}

bool Overlap(const ToneRun& a, const ToneRun& b) {
    return a.on < b.off && b.on < a.off;
}

// What the tone's frequency was when it was sent, and whether that is known: a whole number of hertz, or a usual one
// at a speed that is met with.
std::pair<double, bool> NominalFrequency(double found, const Expectation& expected) {
    if (expected.frequencyHz) {
        return {*expected.frequencyHz, true};
    }
    const double whole = std::round(found);
    if (found > kLowestWholeHz && std::abs(found / whole - 1) * 1e6 < kClockOff) {
        return {whole, true};
    }
    for (const double usual : kLineupTones) {
        if (FindKnownSpeed(found / usual, kClockOff) != nullptr) {
            return {usual, true};
        }
    }
    return {found, false};
}

// A tone of one channel that has no name, and arrives wherever the tone does.
Reference PlainReference(double frequency, double amplitude = 1) {
    Reference reference;
    reference.name = "tone";
    reference.cycle = kSteadySlot;
    reference.channels = {""};
    reference.slots = {{0, kSteadySlot, {{frequency, {amplitude}, false}}}};
    reference.bursts = {{0, frequency, 0, kSteadySlot}};
    return reference;
}

// What the plug-in gives for a tone like that.
Reference SentReference(const std::shared_ptr<const Importer>& importer, double frequency, double levelDb) {
    constexpr double kLeastRate = 48000;  // Hz
    constexpr double kRatePerHz = 4;
    const double rate = std::clamp(std::ceil(kRatePerHz * frequency), kLeastRate, 384000.0);
    const BarsAndToneInfo settings = MakeSettings(
        *importer,
        {.channels = "mono", .sampleRateHz = rate, .frequencyHz = frequency, .levelDb = std::min(levelDb, 0.0)});
    Reference reference = MakeReference(importer, settings, kSteadySlot);
    reference.channels = {""};
    return reference;
}

class ToneSurveyor {
public:
    ToneSurveyor(const History& history, const ToneSighting& sighting)
        : mHistory(&history), mPlacing{sighting.first, 1, 1}, mDelays(history.Inputs()) {
        const double first = std::max(sighting.first, history.SecondsFirst());
        const double last = std::min(sighting.last, history.SecondsEnd());
        mPlacing.start = first;
        for (std::int64_t slot = 0; static_cast<double>(slot + 1) * kSteadySlot < last - first; ++slot) {
            mSlots.push_back({slot, 0});
        }
        if (mSlots.empty()) {
            mSlots.push_back({0, 0});
        }
    }

    // The placing at which a plain tone's pitch is the one that was found.
    [[nodiscard]] double ExactFrequency(double rough) {
        const Reference plain = PlainReference(rough);
        const Placing tuned = TunePitch(*mHistory, plain, mPlacing, mDelays, mSlots);
        return rough * tuned.pitch;
    }

    // What its speed swings by.
    void FindWander(const Reference& reference, double pitch) {
        mPlacing.pitch = pitch;
        mPlacing.tempo = pitch;
        mPlacing = TuneWander(*mHistory, reference, mPlacing, mDelays, mSlots);
    }

    [[nodiscard]] std::vector<Cell> Look(const Reference& reference, double pitch) {
        mPlacing.pitch = pitch;
        mPlacing.tempo = pitch;
        SlotMeter meter(*mHistory, reference);
        meter.Place(mPlacing, mDelays);
        mCells = Cells(reference, mHistory->Inputs());
        for (const SlotNumber& number : mSlots) {
            SlotSound sound = meter.Measure(number);
            LeaveOutDamage(*mHistory, sound);  // what is damaged has no level
            mCells.Add(sound);
        }
        std::vector<Cell> cells;
        for (std::size_t input = 0; input < mHistory->Inputs(); ++input) {
            cells.push_back(mCells.At(0, 0, input));
        }
        return cells;
    }

    [[nodiscard]] Survey Make(const Reference& reference, double pitch) {
        std::vector<Cell> cells = Look(reference, pitch);
        const std::complex<double> sent = reference.slots[0].tones[0].gain[0];
        const double omega = kTurn * reference.slots[0].tones[0].frequency * pitch;
        double loudest = 0;
        std::vector<std::optional<double>> phases;
        for (const Cell& cell : cells) {
            loudest = std::max(loudest, cell.Amplitude());
        }
        for (const Cell& cell : cells) {
            const bool sounds = cell.Amplitude() > kSteadySilent * loudest;
            phases.push_back(sounds ? std::optional(std::arg(cell.sum / sent)) : std::nullopt);
        }
        const double usual = UsualPhase(phases);
        mPlacing.start -= usual / omega;
        std::vector<SurveyedInput> inputs(cells.size());
        for (std::size_t input = 0; input < cells.size(); ++input) {
            if (!phases[input]) {
                continue;
            }
            const double off = std::remainder(*phases[input] - usual, kTurn);
            const bool inverted = std::abs(off) > kTurn / 4;
            inputs[input] = {{true, 0, 1, cells[input].Amplitude() / std::abs(sent)},
                             -std::remainder(off, kTurn / 2) / omega,
                             inverted ? -1 : 1,
                             true,
                             false};
            mDelays[input] = inputs[input].delay;
        }
        static_cast<void>(Look(reference, pitch));
        return {mPlacing, std::move(inputs), mSlots, mCells, {}};
    }

private:
    // The phase that most inputs are near to; of several such the first.
    static double UsualPhase(const std::vector<std::optional<double>>& phases) {
        constexpr double kNearPhase = kTurn / 8;
        double usual = 0;
        std::ptrdiff_t most = 0;
        for (const auto& phase : phases) {
            const auto near = !phase ? 0 : std::ranges::count_if(phases, [&](const auto& other) {
                return other && std::abs(std::remainder(*other - *phase, kTurn)) < kNearPhase;
            });
            if (near > most) {
                most = near;
                usual = *phase;
            }
        }
        return usual;
    }

    const History* mHistory;
    Placing mPlacing;
    std::vector<double> mDelays;
    std::vector<SlotNumber> mSlots;
    Cells mCells{{}, 0};
};

// The loudest input's tone, and whether it is pure enough.
bool IsPure(const std::vector<Cell>& cells, const Expectation& expected) {
    const Cell& loudest = *std::ranges::max_element(cells, {}, [](const Cell& cell) { return cell.Amplitude(); });
    const double limit = expected.AsksForTone() ? kPureEnough : kPureInAuto;
    const double power = loudest.energy / 2;
    return loudest.Seen() && loudest.Amplitude() > kFaint && loudest.residual < limit * power &&
           std::abs(loudest.sum) > 0.5 * loudest.amplitudes;
}

double UsualLevel(const std::vector<Cell>& cells) {
    double loudest = 0;
    std::vector<double> levels;
    for (const Cell& cell : cells) {
        loudest = std::max(loudest, cell.Amplitude());
    }
    for (const Cell& cell : cells) {
        if (cell.Amplitude() > kSteadySilent * loudest) {
            levels.push_back(cell.Amplitude());
        }
    }
    return MedianOf(std::move(levels));
}

}  // namespace

std::optional<ToneSighting> FindSteadyTone(std::span<const ToneRun> runs, const Expectation& expected,
                                           std::optional<double> all) {
    const double asked = expected.AsksForTone() ? kShortTone : kLongTone;
    const double needed = all ? std::clamp(kMostOfAll * *all, kShortTone, asked) : asked;
    const ToneRun* best = nullptr;
    for (const ToneRun& run : runs) {
        const bool isBetter =
            best == nullptr || run.on < best->on - 0.1 || (run.on < best->on + 0.1 && run.amplitude > best->amplitude);
        best = run.Length() >= needed && MayBe(run, expected) && isBetter ? &run : best;
    }
    if (best == nullptr) {
        return std::nullopt;
    }
    const auto isOther = [&](const ToneRun& run) {
        return !SamePitch(run, *best) && Overlap(run, *best) && run.amplitude > kBesideTone * best->amplitude;
    };
    if (!expected.AsksForTone() && std::ranges::any_of(runs, isOther)) {
        return std::nullopt;
    }
    return ToneSighting{best->frequency, best->on, best->off};
}

std::optional<SteadyTone> SurveyTone(const History& history, const ToneSighting& sighting, const Expectation& expected,
                                     const std::shared_ptr<const Importer>& importer) {
    ToneSurveyor surveyor(history, sighting);
    double frequency = surveyor.ExactFrequency(sighting.frequency);
    // As loud as it arrives: what is far softer than that is not asked how fast it goes.
    const double amplitude = UsualLevel(surveyor.Look(PlainReference(frequency), 1));
    surveyor.FindWander(PlainReference(frequency, amplitude), 1);
    frequency = surveyor.ExactFrequency(frequency);
    const auto [nominal, isKnown] = NominalFrequency(frequency, expected);
    const std::vector<Cell> cells = surveyor.Look(PlainReference(nominal), frequency / nominal);
    if (!IsPure(cells, expected)) {
        return std::nullopt;
    }
    const double levelDb = expected.levelDb.value_or(DbFromGain(UsualLevel(cells)));
    SteadyTone tone;
    tone.reference = std::make_unique<Reference>(SentReference(importer, nominal, levelDb));
    tone.reference->pitchKnown = isKnown;
    tone.reference->levelKnown = expected.levelDb.has_value();
    tone.survey = surveyor.Make(*tone.reference, frequency / nominal);
    return tone;
}

}  // namespace lineup::sound
