// Feeds that change on the way, given to the watch piece by piece.
#include "Host/Lineup/Check/Watch/SoundWatch.h"
#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"
#include "Tests/Support/CountedHeap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

namespace {

using lineup::CheckVerdict;
using lineup::WatchedFault;
using lineup::WatchReport;
using test::Ident;
using test::kRate;
using test::Lose;
using test::SampleAt;
using test::Sound;

// What a watch tells, in its order.
struct Told {
    WatchReport report;
    std::vector<lineup::WatchedCycle> cycles;
    std::vector<WatchedFault> begun;
    std::vector<WatchedFault> ended;
};

lineup::WatchListener Ears(Told& told) {
    return {.onCycle = [&told](const auto& cycle) { told.cycles.push_back(cycle); },
            .onBegins = [&told](const auto& fault) { told.begun.push_back(fault); },
            .onEnds = [&told](const auto& fault) { told.ended.push_back(fault); },
            .progress = {}};
}

// Pieces of no particular length, as packets come.
void Feed(lineup::SoundWatch& watch, const Sound& sound, std::ptrdiff_t most = 1537,
          const std::function<void(double second)>& arrives = {}) {
    const auto all = static_cast<std::ptrdiff_t>(sound.front().size());
    for (std::ptrdiff_t first = 0; first < all; first += most) {
        const std::ptrdiff_t count = std::min(most, all - first);
        Sound piece;
        for (const auto& channel : sound) {
            piece.emplace_back(channel.begin() + first, channel.begin() + first + count);
        }
        watch.Hear(piece, static_cast<std::size_t>(count));
        if (arrives) {
            arrives(static_cast<double>(first) / kRate);
        }
    }
}

Told Watch(const Sound& sound, double rate = kRate, const lineup::CheckSettings& settings = {}, bool lossy = false) {
    Told told;
    const lineup::WatchListener ears = Ears(told);
    lineup::Alignment stamps;
    lineup::SoundWatch watch({.rate = rate, .inputs = static_cast<int>(sound.size()), .bits = {}, .lossy = lossy},
                             test::Bundle(), settings, ears, told.report, stamps);
    Feed(watch, sound);
    watch.Finish();
    return told;
}

std::string Text(const Told& told) {
    std::string text;
    for (const WatchedFault& fault : told.begun) {
        text += std::to_string(fault.begins) + " " + fault.fault.text + "\n";
    }
    for (const WatchedFault& fault : told.ended) {
        text += "to " + std::to_string(*fault.ends) + " " + fault.fault.text + "\n";
    }
    return text;
}

void Scale(Sound& sound, std::size_t input, double from, double to, float gain) {
    std::for_each(sound[input].begin() + SampleAt(from), sound[input].begin() + SampleAt(to),
                  [gain](float& sample) { sample *= gain; });
}

void ScaleAll(Sound& sound, double from, double to, float gain) {
    for (std::size_t input = 0; input < sound.size(); ++input) {
        Scale(sound, input, from, to, gain);
    }
}

struct Due {
    const char* fault;
    double begins;  // s
    double ends;    // s; of a moment, and of what stands to the end, 0
};

// Of the EBU's sequence all channels sound together from 9 s of a cycle on to 3 s of the next, C alone from 4.5 to 5 s.
void DamageOneAfterTheOther(Sound& sound) {
    ScaleAll(sound, 14, 14.05, 0);
    Scale(sound, 2, 21.5, 45.3, -1);
    ScaleAll(sound, 62, 71.5, 0);
    Lose(sound, 91.7, 100);
}
const std::vector<Due> kOneAfterTheOther = {
    {"dropout", 14, 0}, {"polarity-inverted", 21.5, 45.3}, {"dropout", 62, 71.5}, {"samples-lost", 91.7, 0}};

void DamageTogether(Sound& sound) {
    Scale(sound, 5, 23, 48, 0);
    Scale(sound, 0, 21.5, 72, 0.8F);
}
const std::vector<Due> kTogether = {{"level-unbalanced", 21.5, 0}, {"channel-missing", 23, 48}};

TEST(SoundWatch, TellsWhenAFaultBeginsAndWhenItEnds) {
    for (const auto& [damage, seconds, due] :
         {std::tuple(&DamageOneAfterTheOther, 102, kOneAfterTheOther), std::tuple(&DamageTogether, 72, kTogether)}) {
        Sound sound = Ident("ebu-5.1", seconds);
        damage(sound);
        const Told told = Watch(sound);
        ASSERT_EQ(told.begun.size(), due.size()) << Text(told);
        EXPECT_EQ(told.report.verdict, CheckVerdict::Faults);
        for (std::size_t i = 0; i < due.size(); ++i) {
            const WatchedFault& found = told.report.faults[i];
            EXPECT_EQ(found.fault.id, due[i].fault) << Text(told);
            EXPECT_NEAR(found.begins, due[i].begins, 0.05) << due[i].fault;
            if (due[i].ends > 0) {
                EXPECT_NEAR(found.ends.value_or(0), due[i].ends, 0.05) << due[i].fault;
            } else {
                EXPECT_TRUE(found.isMoment || !found.ends) << due[i].fault;
            }
        }
    }
}

TEST(SoundWatch, TellsACycleAfterTheOtherAndNoFaultOfAnUndamagedFeed) {
    for (const char* const ident : {"ebu-stereo-1000", "blits"}) {
        const Told told = Watch(Ident(ident, 42, 2.2));
        EXPECT_EQ(told.begun.size(), 0U) << Text(told);
        EXPECT_EQ(told.report.verdict, CheckVerdict::Right);
        EXPECT_EQ(told.report.expected, ident);
        ASSERT_EQ(told.cycles.size(), static_cast<std::size_t>(told.report.rightCycles)) << ident;
        for (const lineup::WatchedCycle& cycle : told.cycles) {
            EXPECT_NEAR(cycle.start, static_cast<double>(cycle.number - 1) * (cycle.end - cycle.start), 0.3) << ident;
            EXPECT_NEAR(cycle.mostGain.value_or(9), 0, 0.01);
        }
    }
}

// Codecs keep 2 kHz from the LFE, and of the low tone alone nobody knows whether it is upside down.
TEST(SoundWatch, MeasuresWhatACodecLeavesAndSaysWhatStaysOpen) {
    Sound sound = Ident("blits", 45);
    for (const double cycle : {0.0, 13.4, 26.8}) {
        Scale(sound, 3, cycle + 10.1, cycle + 13.3, 0);
    }
    const Told told = Watch(sound, kRate, {}, true);
    EXPECT_EQ(told.begun.size(), 0U) << Text(told);
    EXPECT_EQ(told.report.verdict, CheckVerdict::CannotTell);
    ASSERT_EQ(told.cycles.size(), 3U);
    for (const lineup::WatchedCycle& cycle : told.cycles) {
        EXPECT_EQ(cycle.verdict, CheckVerdict::CannotTell);
        EXPECT_NEAR(cycle.mostGain.value_or(9), 0, 0.01);
        EXPECT_NEAR(cycle.clocks.soundPpm.value_or(9), 0, 0.1);
    }
    EXPECT_EQ(std::ranges::count(told.report.notes, "polarity-not-known", &lineup::CheckNote::id), 1);
    ScaleAll(sound, 0, 45, 0.5F);
    const Told softer = Watch(sound, kRate, {}, true);
    ASSERT_EQ(softer.begun.size(), 1U) << Text(softer);
    EXPECT_EQ(softer.begun[0].fault.id, "level-wrong");
}

TEST(SoundWatch, KnowsHowFastTheSoundIsToAMillionth) {
    const Sound sound = Ident("ebu-stereo-400", 30);
    lineup::CheckSettings settings;
    settings.tolerances["speed"] = 50;
    for (const double ppm : {-20.0, 3.0}) {
        const Told told = Watch(sound, kRate * (1 + ppm * 1e-6), settings);
        EXPECT_EQ(told.begun.size(), 0U) << Text(told);
        EXPECT_NEAR(told.report.clocks.soundPpm.value_or(0), ppm, 0.1);
    }
}

// The sound is right by its own rate; who sends it goes by a clock that is not this machine's.
TEST(SoundWatch, TellsTheSendersClockInEachCycleOnceItIsKnown) {
    constexpr double kPacket = 0.02;  // s
    const Sound sound = Ident("ebu-stereo-1000", 45);
    for (const double ppm : {-120.0, 35.0}) {
        Told told;
        const lineup::WatchListener ears = Ears(told);
        lineup::Alignment stamps;
        lineup::SoundWatch watch({.rate = kRate, .inputs = 2, .bits = {}, .lossy = false}, test::Bundle(), {}, ears,
                                 told.report, stamps);
        const auto most = static_cast<std::ptrdiff_t>(kPacket * kRate);
        Feed(watch, sound, most, [&](double second) {
            const double jitter = std::fmod(second * 7.3, 0.004);
            watch.Arrives(second, second / (1 + ppm * 1e-6) + jitter);
        });
        watch.Finish();
        ASSERT_GE(told.cycles.size(), 14U);
        EXPECT_NEAR(told.cycles.back().clocks.senderPpm.value_or(0), ppm, 5);
        EXPECT_NEAR(told.report.clocks.senderPpm.value_or(0), ppm, 5);
        EXPECT_NEAR(told.report.clocks.soundPpm.value_or(9), 0, 0.1);
        EXPECT_NEAR(told.cycles[5].clocks.arrivalMs.value_or(0), 4, 1);
        EXPECT_EQ(told.begun.size(), 0U) << Text(told);
    }
}

TEST(SoundWatch, SaysThatThereIsNoLineup) {
    const Told told = Watch(Sound(2, std::vector<float>(static_cast<std::size_t>(kRate) * 30)));
    EXPECT_EQ(told.report.verdict, CheckVerdict::CannotTell);
    EXPECT_EQ(told.cycles.size(), 0U);
    ASSERT_EQ(told.report.notes.size(), 1U);
    EXPECT_EQ(told.report.notes[0].id, "no-line-up");
}

TEST(SoundWatch, TakesNoMoreMemoryTheLongerItGoesOn) {
    const Sound cycles = Ident("ebu-stereo-1000", 24);
    Told told;
    const lineup::WatchListener deaf;
    lineup::Alignment stamps;
    lineup::SoundWatch watch({.rate = kRate, .inputs = 2, .bits = {}, .lossy = false}, test::Bundle(), {}, deaf,
                             told.report, stamps);
    Feed(watch, cycles);
    Feed(watch, cycles);
    const long long before = test::CountHeap().outstanding;
    for (int times = 0; times < 3; ++times) {
        Feed(watch, cycles);
    }
    EXPECT_NEAR(static_cast<double>(test::CountHeap().outstanding - before), 0, 4096);
    EXPECT_EQ(told.report.faults.size(), 0U);
}

}  // namespace
