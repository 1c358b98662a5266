#include <lineup/Idents.h>
#include "Host/Lineup/Check/Sound/Events/Clicks.h"
#include "Host/Lineup/Check/Sound/Events/Events.h"
#include "Host/Lineup/Check/Sound/Measure/WanderFit.h"
#include "Host/Lineup/Check/Sound/Signal/RawHop.h"
#include "Tests/Host/Lineup/Check/Sound/HistoryOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace {

using lineup::sound::History;
using lineup::sound::Placing;
using lineup::sound::Reference;
using lineup::sound::SlotMeter;
using lineup::sound::SlotNumber;
using lineup::sound::SlotSound;
using lineup::sound::SoundEvent;
using test::Channels;
using test::HistoryOf;
using test::kFinderLevel;
using test::kFinderRate;
using test::ToneOf;
using test::ToneReference;

float& SampleAt(std::vector<float>& channel, double second) {
    return channel[static_cast<std::size_t>(std::llround(second * kFinderRate))];
}

// The second from 1 to 2 s of a recording, as it lies in memory.
struct Second {
    explicit Second(const Channels& sound) : history(HistoryOf(sound)) {
        reference.ident = &lineup::Idents().front();  // whose slots are measured without their ends
        meter.Place({}, std::vector<double>(sound.size()));
        slot = meter.Measure({1, 0});
    }

    History history;
    Reference reference = ToneReference();
    SlotMeter meter{history, reference};
    SlotSound slot;
};

struct ClickCase {
    const char* what;
    std::vector<std::size_t> inputs;  // that have it; of 0 and 1, with the tone, and 2, without
    double at;
    float height;
    bool found;
};

const std::vector<ClickCase> kClicks = {
    {"under a tone", {0}, 1.5, 0.4F, true},
    {"in silence", {2}, 1.5, 0.1F, true},
    {"in silence, next to the end of a slot", {2}, 1.975, 0.1F, true},
    {"in silence, next to its start", {2}, 1.025, 0.1F, true},
    {"too low to be one", {2}, 1.5, 0.01F, false},
    {"at two inputs at once, as where time jumps", {0, 1}, 1.5, 0.4F, false},
};

TEST(FindClicks, FindsSingleWrongSamplesAtTheInputThatHasThem) {
    for (const ClickCase& click : kClicks) {
        Channels sound = {ToneOf(3), ToneOf(3), std::vector<float>(ToneOf(3).size())};
        for (const std::size_t input : click.inputs) {
            SampleAt(sound[input], click.at) = -click.height;
        }
        const Second second(sound);
        const std::vector<SoundEvent> clicks = FindClicks(second.history, second.slot);
        ASSERT_EQ(clicks.size(), click.found ? 1U : 0U) << click.what;
        if (click.found) {
            EXPECT_EQ(clicks[0].inputs, click.inputs) << click.what;
            EXPECT_NEAR(clicks[0].at, click.at, 0.01) << click.what;
        }
    }
}

TEST(FindClicks, ABurstThatBeginsOrEndsIsNone) {
    std::vector<float> burst = ToneOf(3);
    std::fill_n(burst.begin(), std::llround(1.4 * kFinderRate) + 11, 0.0F);
    std::fill_n(burst.begin() + std::llround(1.8 * kFinderRate) + 7, std::llround(0.5 * kFinderRate), 0.0F);
    const Second second({burst});
    EXPECT_TRUE(FindClicks(second.history, second.slot).empty());
}

struct EventCase {
    const char* what;
    double from;  // s
    double to;
    double after;  // level of the tone from there on
    bool found;
    double zero = 0;     // where the sound lies
    bool isTone = true;  // what comes back; else something lower
};

// A tone that comes back at another level: FindEvents has no tone to hold it against.
const std::vector<EventCase> kSilences = {
    {"a gap before a tone that is softer to its slot's end", 1.85, 1.9, 0.75, true},
    {"a gap beside one that is as loud", 1.5, 1.55, 1, true},
    {"a tone that ends, and does not come back", 1.85, 2.4, 1, false},
    {"a gap where the sound lies off zero", 1.5, 1.55, 1, true, 0.03},
    {"a tone that ends, and something else begins", 1.85, 1.9, 1, false, 0, false},
};

TEST(FindEvents, SilenceIsADropoutAtWhateverLevelTheToneComesBack) {
    for (const EventCase& silence : kSilences) {
        std::vector<float> tone = ToneOf(3);
        for (std::size_t n = 0; n < tone.size(); ++n) {
            const double second = static_cast<double>(n) / kFinderRate;
            const double level = second < silence.from ? 1 : (second < silence.to ? 0 : silence.after);
            const double other = 2 * kFinderLevel * std::sin(2 * std::numbers::pi * 210 * second);
            tone[n] =
                static_cast<float>(silence.zero + (second < silence.to || silence.isTone ? tone[n] * level : other));
        }
        Second second({tone});
        const auto events = FindEvents(second.history, second.reference, second.meter, second.slot);
        ASSERT_EQ(events.size(), silence.found ? 1U : 0U) << silence.what;
        if (silence.found) {
            EXPECT_EQ(events[0].kind, SoundEvent::Kind::Dropout) << silence.what;
            EXPECT_NEAR(events[0].at, silence.from, 0.004) << silence.what;
            EXPECT_NEAR(events[0].amount, silence.to - silence.from, 0.006) << silence.what;
        }
    }
}

struct DipCase {
    const char* what;
    double gain;       // that the tone falls to at once; from there it rises again
    double pollution;  // of the tone: another one that comes and goes like that
    SoundEvent::Kind kind;
    double rises = 0.005;  // s
};

TEST(FindEvents, AClickIsOneWhereTheSoundLiesOffZeroToo) {
    std::vector<float> tone = ToneOf(3);
    SampleAt(tone, 1.5) = -0.4F;
    for (float& x : tone) {
        x += 0.03F;
    }
    Second second({tone});
    const auto events = FindEvents(second.history, second.reference, second.meter, second.slot);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].kind, SoundEvent::Kind::Click);
    EXPECT_NEAR(events[0].at, 1.5, 0.001);
}

TEST(FindEvents, ToneThatIsSofterForAMomentIsNoDropout) {
    for (const DipCase& dip : std::vector<DipCase>{
             {"a limiter that follows another input", 0.9, 0, SoundEvent::Kind::Dip},
             {"one that hears something loud", 0.5, 0, SoundEvent::Kind::Dip},
             {"one that is back as soon as a click", 0.7, 0, SoundEvent::Kind::Dip, 0.001},
             {"a tone that is nearly gone", 0.1, 0, SoundEvent::Kind::Dropout},
             {"damage as loud as the tone", 0.9, 0.5, SoundEvent::Kind::Dropout},
         }) {
        std::vector<float> tone = ToneOf(3);
        for (std::size_t n = 0; n < tone.size(); ++n) {
            const double since = static_cast<double>(n) / kFinderRate - 1.5;
            const double falls = since > 0 ? std::exp(-since / dip.rises) : 0;
            const double other = falls * dip.pollution * kFinderLevel * std::sin(0.2 * static_cast<double>(n));
            tone[n] = static_cast<float>(tone[n] * (1 - (1 - dip.gain) * falls) + other);
        }
        Second second({ToneOf(3), tone});
        const auto events = FindEvents(second.history, second.reference, second.meter, second.slot);
        ASSERT_EQ(events.size(), 1U) << dip.what;
        EXPECT_EQ(events[0].kind, dip.kind) << dip.what;
        EXPECT_EQ(events[0].inputs, std::vector<std::size_t>{1}) << dip.what;
        EXPECT_NEAR(events[0].at, 1.5, 0.002) << dip.what;
    }
}

struct WanderCase {
    const char* what;
    std::function<double(double)> sent;
    double hertz;  // 0 where no swing is to be found
    double depth;
    bool lossy = false;
};

double Swinging(double second, double hertz, double depth) {
    return second - depth / (2 * std::numbers::pi * hertz) * std::sin(2 * std::numbers::pi * hertz * second);
}

const std::vector<WanderCase> kWanders = {
    {"wow", [](double t) { return Swinging(t, 1.7, 0.002); }, 1.7, 0.002},
    {"flutter that is hardly there", [](double t) { return Swinging(t, 5.3, 0.0003); }, 5.3, 0.0003},
    {"wow of a clock that is off", [](double t) { return 1.0005 * Swinging(t, 0.9, 0.001); }, 0.9, 0.001},
    {"wow with samples lost in it", [](double t) { return Swinging(t, 1.7, 0.002) + (t > 3.3 ? 0.00137 : 0); }, 1.7,
     0.002},
    {"a steady speed", [](double t) { return t; }, 0, 0},
    {"a speed that is off", [](double t) { return 1.0002 * t; }, 0, 0},
    {"a speed that goes up all along", [](double t) { return t + 3e-5 * t * t; }, 0, 0},
    {"a speed that wanders in no one way",
     [](double t) {
         double at = t;
         for (const double hertz : {0.7, 1.6, 2.9, 4.3, 5.8, 7.1}) {
             at = at - t + Swinging(t, hertz, 0.0008);
         }
         return at;
     },
     0, 0},
    {"wow after a lossy codec", [](double t) { return Swinging(t, 1.7, 0.002); }, 0, 0, true},
};

TEST(TuneWander, FindsASwingOfOneFrequencyAndNothingElse) {
    const std::vector<SlotNumber> slots = {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}};
    const Reference reference = ToneReference();
    for (const WanderCase& wander : kWanders) {
        const History history = HistoryOf({ToneOf(5.1, wander.sent)}, wander.lossy);
        const Placing placing = TuneWander(history, reference, {}, std::vector<double>(1), slots);
        ASSERT_EQ(placing.wanders.size(), wander.hertz > 0 ? 1U : 0U) << wander.what;
        if (wander.hertz > 0) {
            EXPECT_NEAR(placing.wanders[0].hertz, wander.hertz, 0.01) << wander.what;
            EXPECT_NEAR(placing.wanders[0].Depth(), wander.depth, 0.03 * wander.depth) << wander.what;
        }
    }
}

// So many samples in a row are the highest or the lowest of a hop, at any place in it.
TEST(ExamineHop, CountsTheSamplesOfItsFlatTopsFromFourOn) {
    for (std::size_t size = 4; size < 30; ++size) {
        for (std::size_t run = 2; run <= size; ++run) {
            for (std::size_t at = 0; at + run <= size; ++at) {
                std::vector<float> high(size);
                for (std::size_t i = 0; i < size; ++i) {
                    high[i] = i >= at && i < at + run ? 0.5F : 0.01F * static_cast<float>(i);
                }
                std::vector<float> low(high);
                std::ranges::transform(low, low.begin(), std::negate());
                const int known = run < 4 ? 0 : static_cast<int>(run);
                ASSERT_EQ(lineup::sound::ExamineHop(high).flatMost, known)
                    << run << " of " << size << " from " << at << " on";
                ASSERT_EQ(lineup::sound::ExamineHop(low).flatLeast, known)
                    << run << " of " << size << " from " << at << " on";
            }
        }
    }
}

}  // namespace
