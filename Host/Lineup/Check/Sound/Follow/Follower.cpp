#include "Host/Lineup/Check/Sound/Follow/Follower.h"

#include "Host/Lineup/Check/Sound/Events/Clicks.h"
#include "Host/Lineup/Check/Sound/Events/Events.h"
#include "Host/Lineup/Check/Sound/Events/Jumps.h"
#include "Host/Lineup/Check/Sound/Follow/Presence.h"
#include "Host/Lineup/Check/Sound/Measure/Tune.h"
#include "Host/Lineup/Check/Sound/Signal/Turn.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lineup::sound {

namespace {

constexpr double kPatience = 4;         // s without any tone that is due, after which a line-up has ended
constexpr double kBehind = 0.2;         // s that must have been heard after a slot
constexpr double kFromTheStart = 0.05;  // s: a tone without an edge before sounds from the recording's start on
constexpr double kFullLevelDue = 0.9;   // of the sequence's level
constexpr double kLevelPointSeconds = 0.2;
constexpr double kNotGone = 0.2;  // of what is due: what a codec's filter takes away has no level
constexpr std::size_t kMostLevels = 200000;
constexpr std::size_t kLinesAtFirst = 200;  // slots
constexpr std::size_t kLinesOneIn = 16;
constexpr double kPlainChannel = 0.98;  // likeness: no other is heard there
constexpr std::size_t kMostEvents = 1000;
constexpr std::size_t kMostDips = 100;  // events, above which dips are not kept
constexpr std::size_t kSlotsAroundJump = 8;
constexpr double kHeardAfterJump = 3.5;  // s: long enough for an edge
constexpr double kOwnTone = 0.03;        // of the reference's level
constexpr double kTurnedOver = 2.4;      // radians: no time passes by as much, but what is turned upside down does

double MedianOfThere(const InputSlot& input) {
    std::vector<double> residuals;
    for (std::size_t block = 0; block < input.blocks.size(); ++block) {
        if (input.there[block]) {
            residuals.push_back(input.blocks[block].residual);
        }
    }
    return MedianOf(std::move(residuals));
}

}  // namespace

Follower::Follower(const History& history, const Reference& reference, const Survey& survey)
    : mHistory(&history),
      mReference(&reference),
      mDue(reference, survey),
      mMeter(history, reference),
      mAcross(history, reference),
      mPlacing(survey.placing),
      mDelays(survey.Delays()),
      mNext(survey.slots.front()) {
    mMeter.Place(mPlacing, mDelays);
    mLineup.reference = &reference;
    mLineup.placing = survey.placing;
    mLineup.events = survey.jumps;
    mLineup.cells = Cells(reference, history.Inputs());
    mLineup.inputs.reserve(survey.inputs.size());
    for (const SurveyedInput& input : survey.inputs) {
        mLineup.inputs.emplace_back().surveyed = input;
    }
    // What the recording has of the slots before those that were whole.
    for (int back = 0; back < 2 && mMeter.StartOf(mNext) > history.SecondsFirst(); ++back) {
        mNext = SlotBefore(reference, mNext);
    }
}

void Follower::Advance(bool last) {
    while (!mEnded) {
        const double heard = mHistory->SecondsEnd() - (last ? 0 : kHeardAfterJump);
        if (last ? mMeter.StartOf(mNext) > heard : mMeter.EndOf(mNext) > heard) {
            break;
        }
        Take(mNext);
        mNext = NextSlot(*mReference, mNext);
    }
    mLineup.lastPlacing = mPlacing;
    if (last || mEnded) {
        mLineup.endSeen = mLineup.endsAt + kBehind < mHistory->SecondsEnd();
    }
}

void Follower::Take(const SlotNumber& number) {
    SlotSound sound = mMeter.Measure(number);
    const Presence presence = PresenceOf(sound, mDue);
    if (!presence.due) {
        if (mStarted) {
            mSilent.push_back(number);
        }
        return;
    }
    // Of a slot that the line-up's start or end cuts, the part that belongs to it.
    const bool isCut = presence.present > 0 && (!presence.fromStart || !presence.toEnd);
    const auto extent = isCut ? ExtentOfTone(sound) : std::nullopt;
    if (presence.present == 0 || (isCut && !extent)) {
        mEnded = mStarted && sound.end - mLastPresent > kPatience;
        return;
    }
    if (!mStarted) {
        Begin(presence, sound);
    }
    mLastPresent = presence.last;
    const bool goesOn = extent && !presence.toEnd && GoesOnAfter(number);
    mLineup.endsAt = presence.toEnd ? sound.end : presence.last;
    if (extent) {
        sound.Keep(extent->first, goesOn ? sound.end : extent->second);  // silence is no end where it goes on
    }
    std::vector<SoundEvent> events = EventsOf(sound);
    // Silence is the line-up's where it goes on after it.
    for (const SlotNumber& silent : std::exchange(mSilent, {})) {
        Measure(mMeter.Measure(silent));
    }
    for (SoundEvent& event : events) {
        if (event.kind == SoundEvent::Kind::Jump && !TakeJump(event, sound)) {
            continue;
        }
        Keep(event);
    }
    FollowTime(sound);
    Measure(sound);
}

// Whether the next tone that is due is there, as far as was heard.
bool Follower::GoesOnAfter(SlotNumber number) {
    for (std::size_t i = 0; i < mReference->slots.size(); ++i) {
        number = NextSlot(*mReference, number);
        if (mMeter.EndOf(number) > mHistory->SecondsEnd()) {
            return false;
        }
        const Presence presence = PresenceOf(mMeter.Measure(number), mDue);
        if (presence.due) {
            return presence.present > 0;
        }
    }
    return false;
}

void Follower::Begin(const Presence& presence, const SlotSound& sound) {
    mStarted = true;
    mLineup.startsAt = presence.fromStart ? sound.start : presence.first;
    if (mReference->Steady() && mLineup.startsAt < kFromTheStart) {
        mLineup.startsAt = 0;
    }
    mLineup.startSeen = mLineup.startsAt > kBehind;
}

// What happened in a slot, and where it meets the next one; none of that is measured. Where the pitch was kept in
// retiming, tones are torn all along.
std::vector<SoundEvent> Follower::EventsOf(SlotSound& sound) {
    if (mPlacing.tempo != mPlacing.pitch) {
        return {};
    }
    const std::vector<SoundEvent> clicks = mHistory->lossy ? std::vector<SoundEvent>() : FindClicks(*mHistory, sound);
    std::vector<SoundEvent> events = FindEvents(*mHistory, *mReference, mMeter, sound);
    mAcross.AddEvents(mMeter, sound.number, mLineup.events, events);
    AddClicks(clicks, mLineup.events, events);
    return events;
}

void Follower::Keep(const SoundEvent& event) {
    if (IsKnown(mLineup.events, event.at)) {
        return;
    }
    const bool isDip = event.kind == SoundEvent::Kind::Dip;  // a limiter has many, and one says it
    if (mLineup.events.size() < (isDip ? kMostDips : kMostEvents)) {
        mLineup.events.push_back(event);
    } else {
        mLineup.moreEvents += isDip ? 0 : 1;
    }
}

// What follows is placed anew; this slot is measured up to the jump and after it.
bool Follower::TakeJump(SoundEvent& event, SlotSound& sound) {
    ToneRuns runs(mHistory->grid);
    if (!mReference->Steady()) {
        runs.Advance(*mHistory);
    }
    std::vector<SlotNumber> slots = {SlotBefore(*mReference, SlotBefore(*mReference, sound.number))};
    while (slots.size() < kSlotsAroundJump) {
        slots.push_back(NextSlot(*mReference, slots.back()));
    }
    const TimeJump jump =
        ResolveJump(*mHistory, *mReference, mPlacing, RoughEdges(runs.Runs(), *mReference, mPlacing), slots, event);
    if (std::abs(jump.lost) * mHistory->grid.rate < kLeastJump) {
        return false;
    }
    mPlacing.jumps.push_back(jump);
    mMeter.Place(mPlacing, mDelays);
    sound = mMeter.Measure(sound.number);
    LeaveOutDamage(*mHistory, sound);
    return true;
}

void Follower::Measure(const SlotSound& sound) {
    ++mMeasured;
    mLineup.cells.Add(sound);
    for (std::size_t input = 0; input < sound.inputs.size(); ++input) {
        if (sound.inputs[input].CountThere() > 0) {
            MeasureInput(sound, input);
        }
    }
    for (const Vote& vote : PitchVotes(sound, *mReference, mPlacing.pitch)) {
        mLineup.speed.weight += vote.weight;
        mLineup.speed.slopes += vote.weight * vote.value;
        mLineup.speed.slotSlopes.Add(vote.value);
    }
}

void Follower::MeasureInput(const SlotSound& sound, std::size_t input) {
    InputFindings& found = mLineup.inputs[input];
    const InputSlot& slot = sound.inputs[input];
    const std::size_t number = sound.number.slot;
    const bool hasTones = !mReference->slots[number].tones.empty();
    const std::size_t tone = hasTones ? mDue.LoudestTone(number, input) : 0;
    const double due = hasTones ? mDue.At(number, tone, input) : 0;
    std::vector<double> high;
    const bool isFull =
        due > kOwnTone * mReference->Level() && SentAt(number, tone, input) > kFullLevelDue * mReference->Level();
    MeasureHops(sound, input, isFull, high);
    const auto weight = static_cast<double>(slot.CountThere());
    const double noise = MedianOfThere(slot) + MedianOf(std::move(high));
    (due > kOwnTone * mReference->Level() ? found.toneNoise : found.gapNoise).Add(noise, weight);
    for (std::size_t block = 0; block < slot.blocks.size(); ++block) {
        if (slot.there[block]) {
            found.dc.Add(slot.blocks[block].dc);
        }
    }
    const bool own = due > kOwnTone * mReference->Level();
    if (own) {
        AddTops(sound, input);
        AddLevels(sound, input, tone);
        if (isFull && mPlacing.tempo == mPlacing.pitch && found.surveyed.arrival.likeness > kPlainChannel) {
            AddSteadiness(sound, *mReference, mPlacing.pitch, input, tone, mLineup.steadiness);
        }
    }
    // All of them at first; of a long line-up one in so many.
    if (mMeasured < kLinesAtFirst || mMeasured % kLinesOneIn == 0) {
        AddLines(*mHistory, *mReference, sound, mPlacing, input, isFull ? tone : slot.gains.size(), found.lines);
    }
}

// A point for each fifth of a second.
void Follower::AddLevels(const SlotSound& sound, std::size_t input, std::size_t tone) {
    const InputSlot& slot = sound.inputs[input];
    const double sent = SentAt(sound.number.slot, tone, input);
    if (!mLineup.inputs[input].surveyed.arrival.channel || sent <= 0) {
        return;
    }
    const bool full = sent > kFullLevelDue * mReference->Level();
    const auto together = std::max<std::size_t>(1, static_cast<std::size_t>(kLevelPointSeconds / sound.step));
    for (std::size_t first = 0; first < slot.blocks.size(); first += together) {
        double amplitude = 0;
        double count = 0;
        for (std::size_t block = first; block < std::min(first + together, slot.blocks.size()); ++block) {
            amplitude += slot.there[block] ? std::abs(slot.gains[tone][block]) : 0;
            count += slot.there[block] ? 1 : 0;
        }
        if (count > 0 && amplitude / count > kNotGone * sent && mLineup.levels.size() < kMostLevels) {
            const double at = slot.firstMiddle + (static_cast<double>(first) + count / 2) * sound.step;
            mLineup.levels.push_back(
                {at, 20 * std::log10(amplitude / count / sent), input, sent, full, sound.number.slot, tone});
        }
    }
}

double Follower::SentAt(std::size_t slot, std::size_t tone, std::size_t input) const {
    const auto& channel = mLineup.inputs[input].surveyed.arrival.channel;
    return channel ? mReference->slots[slot].tones[tone].Amplitude(*channel) : mReference->Level();
}

// The hops that lie within the blocks that are there.
void Follower::MeasureHops(const SlotSound& sound, std::size_t input, bool isFull, std::vector<double>& high) {
    InputFindings& found = mLineup.inputs[input];
    const InputSlot& slot = sound.inputs[input];
    const double hopSeconds = mHistory->grid.HopSeconds();
    const auto& hops = mHistory->hops[input];
    for (std::size_t block = 0; block < slot.there.size(); ++block) {
        const double begins = slot.firstMiddle + (static_cast<double>(block) - 0.5) * sound.step;
        const auto first = std::max(hops.First(), static_cast<std::int64_t>(std::ceil(begins / hopSeconds)));
        const auto end = std::min(hops.End(), static_cast<std::int64_t>(std::ceil((begins + sound.step) / hopSeconds)));
        const bool isNextThere = block + 1 == slot.there.size() || slot.there[block + 1];
        const std::int64_t inside = isNextThere ? end : end - 1;  // the last hop reaches into the next block
        for (std::int64_t hop = first; slot.there[block] && hop < inside; ++hop) {
            high.push_back(static_cast<double>(hops[hop].high));
            if (isFull) {
                found.tops += hops[hop].atLeast + hops[hop].atMost;
                found.samples += static_cast<double>(mHistory->grid.HopSamples());
            }
            found.bits |= hops[hop].bits;
            found.least = std::min(found.least, static_cast<double>(hops[hop].least));
            found.most = std::max(found.most, static_cast<double>(hops[hop].most));
        }
    }
}

// Tops that gain cuts off as a tone begins lie at the very ends of a slot, where no block is. Of one that the line-up's
// start or end cuts, what belongs to other sound stays away.
void Follower::AddTops(const SlotSound& sound, std::size_t input) {
    const InputSlot& slot = sound.inputs[input];
    double lowest = mReference->Frequencies().back();
    for (const RefTone& tone : mReference->slots[sound.number.slot].tones) {
        lowest = std::min(lowest, tone.frequency);
    }
    const double hopSeconds = mHistory->grid.HopSeconds();
    const auto first = std::ranges::find(slot.there, true) - slot.there.begin();
    const auto last = slot.there.rend() - std::find(slot.there.rbegin(), slot.there.rend(), true);
    const bool isFromStart = first == 0 && sound.start > mLineup.startsAt;
    const bool isToEnd = last == std::ssize(slot.there) && sound.end <= mLineup.endsAt;
    const double delay = mDelays[input];
    const double begins =
        isFromStart ? sound.start + delay : slot.firstMiddle + (static_cast<double>(first) - 0.5) * sound.step;
    const double ends = isToEnd ? sound.end + delay : slot.firstMiddle + (static_cast<double>(last) - 0.5) * sound.step;
    const auto& hops = mHistory->hops[input];
    const double from = begins / hopSeconds;
    const auto firstHop =
        std::max(hops.First(), static_cast<std::int64_t>(isFromStart ? std::floor(from) : std::ceil(from)));
    const auto endHop = std::min(hops.End(), static_cast<std::int64_t>(std::floor(ends / hopSeconds)));
    for (std::int64_t hop = firstHop; hop < endHop; ++hop) {
        mLineup.inputs[input].flat.Add(hops[hop], kTurn * lowest * mPlacing.pitch / mHistory->grid.rate);
    }
}

// Where the tones say that time has gone since the last slot.
void Follower::FollowTime(const SlotSound& sound) {
    if (mPlacing.tempo != mPlacing.pitch) {
        return;
    }
    const std::vector<RefTone>& tones = mReference->slots[sound.number.slot].tones;
    double weights = 0;
    double late = 0;
    for (std::size_t m = 0; m < tones.size(); ++m) {
        for (std::size_t input = 0; input < sound.inputs.size(); ++input) {
            const SurveyedInput& surveyed = mLineup.inputs[input].surveyed;
            if (tones[m].floating || !surveyed.exact || surveyed.polarity == 0 ||
                tones[m].Amplitude(*surveyed.arrival.channel) < kOwnTone * mReference->Level()) {
                continue;
            }
            std::complex<double> sum;
            for (std::size_t block = 0; block < sound.inputs[input].blocks.size(); ++block) {
                sum += sound.inputs[input].there[block] ? sound.inputs[input].gains[m][block] : 0;
            }
            sum *= static_cast<double>(surveyed.polarity) / tones[m].gain[*surveyed.arrival.channel];
            if (std::abs(std::arg(sum)) > kTurnedOver) {
                continue;
            }
            const double omega = kTurn * tones[m].frequency * mPlacing.pitch;
            weights += std::norm(sum) * omega * omega;
            late -= std::norm(sum) * omega * std::arg(sum);
        }
    }
    if (weights > 0) {
        mLineup.speed.shifts.Add(late / weights);
        mPlacing.start += late / weights;
        mMeter.Place(mPlacing, mDelays);
    }
}

}  // namespace lineup::sound
