#include "Host/Lineup/Check/Sound/Follow/Survey.h"

#include "Host/Lineup/Check/Sound/Events/Across.h"
#include "Host/Lineup/Check/Sound/Events/Events.h"
#include "Host/Lineup/Check/Sound/Events/Jumps.h"
#include "Host/Lineup/Check/Sound/Measure/EdgeTrend.h"
#include "Host/Lineup/Check/Sound/Measure/Tune.h"
#include "Host/Lineup/Check/Sound/Measure/WanderFit.h"
#include "Host/Lineup/Check/Sound/Signal/Clusters.h"
#include "Host/Lineup/Check/Sound/Signal/PhaseLine.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lineup::sound {

namespace {

constexpr std::size_t kMostJumps = 8;
constexpr std::size_t kFewJumps = 3;
constexpr double kSightingOff = 0.006;  // s: what followed tones may be off
constexpr double kSlack = 0.05;         // s: what a sighting may be off
constexpr double kLateEnough = 0.008;   // s: an input that is measured again with its delay
constexpr double kScattered = 0.0005;   // s: edges that no path leaves so far apart
constexpr int kMostMissing = 2;         // slots of channels that are missing, one after the other
constexpr double kPure = 0.5;           // of a block's energy

std::vector<SlotNumber> SlotsWithin(const SlotMeter& meter, const Reference& reference, double first, double last) {
    std::vector<SlotNumber> slots;
    SlotNumber number{};
    while (meter.StartOf(number) > first - kSlack) {
        number = SlotBefore(reference, number);
    }
    for (; meter.StartOf(number) < last + kSlack; number = NextSlot(reference, number)) {
        if (meter.StartOf(number) > first - kSlack && meter.EndOf(number) < last + kSlack) {
            slots.push_back(number);
        }
    }
    return slots;
}

// How loud a slot's tone is at the input where it is loudest, against what was sent; 0 unless it is a clear tone.
double LoudnessOf(const SlotSound& sound, const Reference& reference) {
    double loudest = 0;
    const std::vector<RefTone>& tones = reference.slots[sound.number.slot].tones;
    for (std::size_t m = 0; m < tones.size(); ++m) {
        double sent = 0;
        for (std::size_t channel = 0; channel < reference.channels.size(); ++channel) {
            sent = std::max(sent, tones[m].Amplitude(channel));
        }
        for (const InputSlot& input : sound.inputs) {
            const auto line = FitPhaseLine(input.gains[m], input.there, sound.step);
            double residual = 0;
            for (std::size_t block = 0; block < input.blocks.size(); ++block) {
                residual += input.there[block]
                                ? input.blocks[block].residual / static_cast<double>(line ? line->blocks : 1)
                                : 0;
            }
            if (line && line->amplitude * line->amplitude / 2 > kPure / (1 - kPure) * residual) {
                loudest = std::max(loudest, line->amplitude / sent);
            }
        }
    }
    return loudest;
}

// Goes on in one direction for as long as tones are where they are due. A channel that is missing leaves its slots
// silent, and the sequence goes on behind them.
void Extend(SlotMeter& meter, const History& history, const Reference& reference, double typical, bool forwards,
            std::vector<SlotNumber>& slots) {
    std::vector<SlotNumber> silent;
    int missing = 0;
    SlotNumber number = forwards ? slots.back() : slots.front();
    for (;;) {
        number = forwards ? NextSlot(reference, number) : SlotBefore(reference, number);
        if (meter.EndOf(number) < history.SecondsFirst() || meter.StartOf(number) > history.SecondsEnd()) {
            return;
        }
        silent.push_back(number);
        if (reference.slots[number.slot].tones.empty()) {
            continue;
        }
        const double loudness = LoudnessOf(meter.Measure(number), reference);
        if (loudness == 0 && missing < kMostMissing) {
            ++missing;
            continue;
        }
        if (loudness < 0.4 * typical || loudness > 2.5 * typical) {
            return;
        }
        missing = 0;
        for (const SlotNumber& add : silent) {
            slots.insert(forwards ? slots.end() : slots.begin(), add);
        }
        silent.clear();
    }
}

double BeforeOf(std::span<const EdgeVote> edges, double at) {
    std::vector<double> late;
    for (const EdgeVote& edge : edges) {
        if (edge.at < at) {
            late.push_back(edge.late);
        }
    }
    return MedianOf(std::move(late));
}

class Surveyor {
public:
    Surveyor(const History& history, const Sighting& sighting)
        : mHistory(&history),
          mReference(sighting.reference),
          mPlacing(sighting.placing),
          mMeter(history, *sighting.reference),
          mDelays(history.Inputs()) {
        mMeter.Place(mPlacing, mDelays);
        mSlots = SlotsWithin(mMeter, *mReference, sighting.first, sighting.last);
    }

    [[nodiscard]] bool FindSlots() {
        if (mSlots.empty()) {
            return false;
        }
        mPlacing = TunePitch(*mHistory, *mReference, mPlacing, mDelays, mSlots);
        mMeter.Place(mPlacing, mDelays);
        std::vector<double> loudness;
        for (const SlotNumber& number : mSlots) {
            const double loud = LoudnessOf(mMeter.Measure(number), *mReference);
            if (loud > 0) {
                loudness.push_back(loud);
            }
        }
        const double typical = MedianOf(std::move(loudness));
        Extend(mMeter, *mHistory, *mReference, typical, false, mSlots);
        Extend(mMeter, *mHistory, *mReference, typical, true, mSlots);
        mPlacing = TunePitch(*mHistory, *mReference, mPlacing, mDelays, mSlots);
        mPlacing = TuneWander(*mHistory, *mReference, mPlacing, mDelays, mSlots);
        if (!mPlacing.wanders.empty()) {
            mPlacing = TunePitch(*mHistory, *mReference, mPlacing, mDelays, mSlots);
        }
        return typical > 0;
    }

    // Time that jumps within a slot shows there; how far, by the edges before and after. Elsewhere the edges alone know
    // of it. How many there are.
    std::size_t FindJumps(std::span<const ToneRun> runs) {
        mMeter.Place(mPlacing, mDelays);
        const Across across(*mHistory, *mReference);
        for (const SlotNumber& number : mSlots) {
            SlotSound sound = MeasureOwn(number);
            std::vector<SoundEvent> events = FindEvents(*mHistory, *mReference, mMeter, sound);
            across.AddEvents(mMeter, number, mJumps, events);
            for (SoundEvent& event : events) {
                const bool isJump = event.kind == SoundEvent::Kind::Jump && !IsKnown(mJumps, event.at);
                if (isJump && mJumps.size() < kMostJumps) {
                    TakeJump(event, runs);
                }
            }
        }
        if (const auto step = mJumps.empty() ? FindStep(RoughEdges(runs, *mReference, mPlacing)) : std::nullopt) {
            SoundEvent event{SoundEvent::Kind::Jump, step->at, step->lost, {}};
            TakeJump(event, runs);
        }
        std::ranges::sort(mPlacing.jumps, {}, &TimeJump::at);
        mMeter.Place(mPlacing, mDelays);
        return mJumps.size();
    }

    [[nodiscard]] bool GoesAsFast(std::span<const ToneRun> runs) const {
        return !mSlots.empty() && LieOnOneLevel(RoughEdges(runs, *mReference, mPlacing));
    }

    [[nodiscard]] bool EdgesLieApart(std::span<const ToneRun> runs) const {
        return LieApart(RoughEdges(runs, *mReference, mPlacing));
    }

    /// The edges that were measured last.
    [[nodiscard]] const EdgesOfInputs& Edges() const { return mLate; }

    void LookAtEdges() { Look(); }

    [[nodiscard]] const Placing& Where() const { return mPlacing; }

    [[nodiscard]] Survey Measure() {
        Look();
        const auto isLate = [](const auto& edges) {
            return edges && edges->agree && std::abs(edges->late) > kLateEnough;
        };
        if (std::ranges::any_of(mAgreed, isLate)) {
            for (std::size_t input = 0; input < mDelays.size(); ++input) {
                mDelays[input] = DoEdgesAgree(input) ? mAgreed[input]->late : 0;
            }
            Look();
        }
        Survey survey{mPlacing, std::vector<SurveyedInput>(mArrivals.size()), mSlots, mCells, mJumps};
        std::vector<double> delays;
        bool isSure = mPlacing.tempo != mPlacing.pitch;  // phases say nothing then, and no polarity leans on it
        for (std::size_t input = 0; input < mArrivals.size(); ++input) {
            if (DoEdgesAgree(input)) {
                survey.inputs[input] = InputOf(input, mAgreed[input]->late);
                delays.push_back(survey.inputs[input].delay);
                isSure = isSure || survey.inputs[input].polarity != 0;
            }
        }
        // A tone without edges is taken to be as late as the others, or as all edges together have it: where one of the
        // others is so late for sure.
        const bool known = (!delays.empty() && isSure) || EdgesKnowTogether();
        for (std::size_t input = 0; input < mArrivals.size(); ++input) {
            if (!DoEdgesAgree(input)) {
                const double usual = UsualDelay(input, delays);
                survey.inputs[input] = InputOf(input, usual - mDelays[input]);
                if (!known || LiesElsewhere(input, usual)) {
                    survey.inputs[input].polarity = 0;
                    survey.inputs[input].exact = false;
                }
            }
        }
        return survey;
    }

private:
    void TakeJump(SoundEvent& event, std::span<const ToneRun> runs) {
        // What lies before keeps its place, whichever side the sighting went by.
        const double before = BeforeOf(RoughEdges(runs, *mReference, mPlacing), event.at);
        Placing placing = mPlacing;
        placing.start += std::abs(before) > kSightingOff ? before : 0;
        const std::vector<EdgeVote> rough = RoughEdges(runs, *mReference, placing);
        const TimeJump jump = ResolveJump(*mHistory, *mReference, placing, rough, mSlots, event);
        if (std::abs(jump.lost) * mHistory->grid.rate < kLeastJump) {
            return;
        }
        mPlacing = placing;
        mPlacing.jumps.push_back(jump);
        mJumps.push_back(event);
    }

    // What is heard of it so far may break in what is not; a cycle before has it whole.
    [[nodiscard]] bool IsNeedless(const SlotNumber& number) const {
        const bool isWhole = mMeter.EndOf(number) < mHistory->SecondsEnd();
        return !isWhole && std::ranges::any_of(mSlots, [&](const SlotNumber& other) {
            return other.slot == number.slot && other.cycle < number.cycle && mMeter.StartOf(other) > 0;
        });
    }

    // A slot; of one that the line-up's start or end cuts, the part that belongs to it.
    [[nodiscard]] SlotSound MeasureOwn(const SlotNumber& number) {
        SlotSound sound = mMeter.Measure(number);
        const bool isOuter = number.slot == mSlots.front().slot || number.slot == mSlots.back().slot;
        const auto extent = isOuter ? ExtentOfTone(sound) : std::nullopt;
        if (extent) {
            sound.Keep(extent->first, extent->second);
        }
        return sound;
    }

    // Measures the slots, and where each input's channel has its edges.
    void Look() {
        mMeter.Place(mPlacing, mDelays);
        mCells = Cells(*mReference, mHistory->Inputs());
        std::vector<SlotSound> sounds;
        for (const SlotNumber& number : mSlots) {
            if (IsNeedless(number)) {
                continue;
            }
            sounds.push_back(MeasureOwn(number));
            if (mPlacing.tempo == mPlacing.pitch) {
                LeaveOutDamage(*mHistory, sounds.back());
            }
            mCells.Add(sounds.back());
        }
        mArrivals = Assign(mCells, *mReference, mHistory->Inputs());
        mAgreed.assign(mArrivals.size(), std::nullopt);
        mEdges.clear();
        mLate.assign(mArrivals.size(), {});
        for (std::size_t input = 0; input < mArrivals.size(); ++input) {
            std::vector<LateEdge>& late = mLate[input];
            for (const SlotSound& sound : sounds) {
                if (mArrivals[input].channel) {
                    const auto more = EdgeDelays(*mHistory, *mReference, sound, mPlacing, mDelays[input], input,
                                                 *mArrivals[input].channel);
                    late.insert(late.end(), more.begin(), more.end());
                }
            }
            for (const LateEdge& edge : late) {
                mEdges.push_back({edge.late, edge.weight});
            }
            mAgreed[input] = AgreeOnDelay(late, mHistory->lossy);
        }
    }

    // Those that do not, as under a codec's noise, say too little about one input.
    [[nodiscard]] bool DoEdgesAgree(std::size_t input) const { return mAgreed[input] && mAgreed[input]->agree; }

    // As late as others whose edges agree: of those that differ from each other as that one which its own edges are
    // nearest to.
    [[nodiscard]] double UsualDelay(std::size_t input, const std::vector<double>& others) const {
        if (others.empty()) {
            return WeightedMedian(mEdges);
        }
        const double middle = MedianOf(others);
        const double own = mAgreed[input] ? mAgreed[input]->late + mDelays[input] : middle;
        return *std::ranges::min_element(others, {}, [own](double other) { return std::abs(other - own); });
    }

    // Its own edges do not agree well enough to say where, but surely not there.
    [[nodiscard]] bool LiesElsewhere(std::size_t input, double usual) const {
        constexpr double kElsewhere = 0.003;  // s
        return mAgreed[input] && std::abs(mAgreed[input]->late + mDelays[input] - usual) > kElsewhere;
    }

    // The median of all edges is off by far less than half a period: after a lossy codec, which may move them alike in
    // each cycle, that of beginnings and that of ends have to say the same where there are few inputs with edges.
    [[nodiscard]] bool EdgesKnowTogether() const {
        constexpr double kMostDoubt = 0.00006;  // s, standard deviation
        constexpr int kManyInputs = 3;
        int inputs = 0;
        std::vector<double> rises;
        std::vector<double> falls;
        for (const auto& edges : mLate) {
            inputs += edges.empty() ? 0 : 1;
            for (const LateEdge& edge : edges) {
                (edge.rises ? rises : falls).push_back(edge.late);
            }
        }
        const bool bothWays = !rises.empty() && !falls.empty() &&
                              std::abs(MedianOf(std::move(rises)) - MedianOf(std::move(falls))) / 2 < kMostDoubt;
        if (mHistory->lossy && inputs < kManyInputs && !bothWays) {
            return false;
        }
        const double middle = WeightedMedian(mEdges);
        std::vector<double> off;
        off.reserve(mEdges.size());
        for (const Vote& edge : mEdges) {
            off.push_back(std::abs(edge.value - middle));
        }
        const auto count = static_cast<double>(off.size());
        return count > 0 && 1.85 * MedianOf(std::move(off)) / std::sqrt(count) < kMostDoubt;
    }

    // How far from where its edges have it an input may be, s. After a codec a few of them may agree by chance, and are
    // in as much doubt as all edges: where tones of several pitches tell by their phases which place is the right one.
    [[nodiscard]] double DoubtOf(std::size_t input) const {
        const std::vector<LateEdge>& edges = mLate[input];
        const bool phasesTell =
            std::ranges::any_of(edges, [&](const LateEdge& edge) { return edge.frequency != edges.front().frequency; });
        return std::max(mAgreed[input]->doubt, mHistory->lossy && phasesTell ? ScatterOfEdges(mLate) : 0);
    }

    [[nodiscard]] SurveyedInput InputOf(std::size_t input, double around) const {
        SurveyedInput surveyed{mArrivals[input], mDelays[input] + around, 0, false, DoEdgesAgree(input)};
        if (surveyed.arrival.channel && mPlacing.tempo == mPlacing.pitch) {
            const auto doubt = surveyed.hasEdges ? std::optional(DoubtOf(input)) : std::nullopt;
            const DelayAndPolarity found =
                DelayOf(mCells, *mReference, input, *surveyed.arrival.channel, mPlacing.pitch, around, doubt);
            surveyed.delay = mDelays[input] + found.delay;
            surveyed.polarity = found.polarity;
            surveyed.exact = found.exact;
        }
        return surveyed;
    }

    const History* mHistory;
    const Reference* mReference;
    Placing mPlacing;
    SlotMeter mMeter;
    std::vector<double> mDelays;
    std::vector<SlotNumber> mSlots;
    std::vector<SoundEvent> mJumps;
    Cells mCells{{}, 0};
    std::vector<Arrival> mArrivals;
    std::vector<std::optional<AgreedDelay>> mAgreed;  // by each input's edges, where it has any
    std::vector<Vote> mEdges;                         // of all inputs
    EdgesOfInputs mLate;
};

}  // namespace

std::vector<double> Survey::Delays() const {
    std::vector<double> delays;
    delays.reserve(inputs.size());
    for (const SurveyedInput& input : inputs) {
        delays.push_back(input.delay);
    }
    return delays;
}

namespace {

// Retiming by so little that all is found at its places: the edges tell it, where time does not jump.
std::optional<Survey> AtTempoOfEdges(const History& history, const Sighting& sighting, double scatter) {
    Surveyor asFast(history, sighting);
    if (!asFast.FindSlots()) {
        return std::nullopt;
    }
    asFast.LookAtEdges();
    const auto trend = FindTrend(asFast.Edges(), scatter);
    if (!trend) {
        return std::nullopt;
    }
    Sighting retimed = sighting;
    retimed.placing = asFast.Where();
    Placing& placing = retimed.placing;
    const double clip = placing.ToClip(trend->middle);
    placing.tempo = placing.pitch / (1 + trend->slope);
    placing.start += trend->middle + trend->late - placing.ToRecording(clip);
    Surveyor surveyor(history, retimed);
    return surveyor.FindSlots() ? std::optional(surveyor.Measure()) : std::nullopt;
}

}  // namespace

std::optional<Survey> MakeSurvey(const History& history, const Sighting& sighting, std::span<const ToneRun> runs) {
    // A jump or two look like another tempo; retiming that keeps the pitch tears the tones all along.
    if (sighting.placing.tempo != sighting.placing.pitch) {
        Sighting asFast = sighting;
        asFast.placing.tempo = sighting.placing.pitch;
        asFast.placing.start += sighting.first - asFast.placing.ToRecording(sighting.placing.ToClip(sighting.first));
        Surveyor surveyor(history, asFast);
        const std::size_t jumps = surveyor.FindSlots() ? surveyor.FindJumps(runs) : 0;
        if ((jumps > 0 && jumps <= kFewJumps && !surveyor.EdgesLieApart(runs)) ||
            (jumps == 0 && surveyor.GoesAsFast(runs))) {
            return surveyor.Measure();
        }
    }
    Surveyor surveyor(history, sighting);
    if (!surveyor.FindSlots()) {
        return std::nullopt;
    }
    if (sighting.placing.tempo != sighting.placing.pitch) {
        return surveyor.Measure();
    }
    surveyor.FindJumps(runs);
    Survey survey = surveyor.Measure();
    const double scatter = ScatterOfEdges(surveyor.Edges());
    const bool mayBeRetimed = !history.lossy && scatter > kScattered && survey.placing.wanders.empty();
    const auto retimed = mayBeRetimed ? AtTempoOfEdges(history, sighting, scatter) : std::nullopt;
    return retimed ? *retimed : survey;
}

}  // namespace lineup::sound
