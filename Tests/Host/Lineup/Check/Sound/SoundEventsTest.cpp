#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string>

namespace {

using test::Check;
using test::Ident;
using test::Ids;
using test::kRate;
using test::Lose;
using test::Repeat;
using test::SampleAt;
using test::Sound;
using test::Strings;

void Silence(Sound& sound, double at, double seconds) {
    for (auto& channel : sound) {
        std::fill_n(channel.begin() + SampleAt(at), SampleAt(seconds), 0.0F);
    }
}

struct Happening {
    const char* ident;
    const char* fault;
    double at;        // s
    double measured;  // as the fault has it
    const char* text;
    std::function<void(Sound&)> damage;
};

// BLITS: 880 Hz from 0.8 to 1.4 s at R, 1000 Hz from 6.1 to 6.4 s at L, and from 7.9 to 9.9 s, silence from 9.9 to 10.2
// s.
const std::vector<Happening> kHappenings = {
    {"blits", "dropout", 8.5, 0.05, "From 8.500 s on 49.8 ms are silent or damaged at inputs 1 and 2.",
     [](Sound& sound) { Silence(sound, 8.5, 0.05); }},
    {"blits", "dropout", 6.17, 0.145, "From 6.170 s on 144.8 ms are silent",
     [](Sound& sound) { Silence(sound, 6.17, 0.145); }},
    {"blits", "samples-lost", 8.5, 5, "At 8.500 s 5.0 samples are lost.", [](Sound& sound) { Lose(sound, 8.5, 5); }},
    {"blits", "samples-lost", 8.5, 601, "At 8.500 s 601.0 samples are lost.",
     [](Sound& sound) { Lose(sound, 8.5, 601); }},
    {"blits", "samples-lost", 1.1, 120, "At 1.100 s 120.0 samples are lost.",
     [](Sound& sound) { Lose(sound, 1.1, 120); }},
    {"blits", "samples-repeated", 8.5, 7, "At 8.500 s 7.0 samples come twice.",
     [](Sound& sound) { Repeat(sound, 8.5, 7); }},
    {"ebu-5.1", "samples-repeated", 6.8, 700, "At 6.800 s 700.0 samples come twice.",
     [](Sound& sound) { Repeat(sound, 6.8, 700); }},
    {"ebu-5.1", "samples-lost", 1.5, 100,
     "At 1.500 s 100.0 samples are lost, or whole periods of the tone more or fewer.",
     [](Sound& sound) { Lose(sound, 1.5, 100); }},
    {"blits", "click", 8.5, 0, "A click at 8.500 s at input 2.",
     [](Sound& sound) { sound[1][static_cast<std::size_t>(SampleAt(8.5))] = 0.3F; }},
    {"blits", "click", 5.0, 0, "A click at 5.000 s at input 6.",
     [](Sound& sound) { sound[5][static_cast<std::size_t>(SampleAt(5))] = 0.02F; }},
};

TEST(SoundEvents, AreNamedOnceWithTheirPlaceAndTheirAmount) {
    for (const Happening& happening : kHappenings) {
        Sound sound = Ident(happening.ident, 14.5);
        happening.damage(sound);
        const auto findings = Check(sound);
        ASSERT_EQ(Ids(findings), Strings{happening.fault}) << happening.ident << " " << happening.measured;
        EXPECT_TRUE(findings.faults[0].text.starts_with(happening.text)) << findings.faults[0].text;
        EXPECT_NEAR(findings.faults[0].at.value_or(0), happening.at, 0.003) << happening.fault;
        EXPECT_NEAR(findings.faults[0].measured.value_or(0), happening.measured, happening.measured < 1 ? 0.003 : 0.05)
            << happening.fault;
    }
}

TEST(SoundEvents, AllOfThemAreNamed) {
    Sound sound = Ident("ebu-5.1", 28);
    Silence(sound, 10.5, 0.03);
    Lose(sound, 11, 17);
    sound[2][static_cast<std::size_t>(SampleAt(13))] = -0.4F;
    Repeat(sound, 25.1, 33);
    EXPECT_EQ(Ids(Check(sound)), (Strings{"dropout", "samples-lost", "click", "samples-repeated"}));
}

TEST(SoundEvents, WholePeriodsThatAreLostAreKnownByTheEdgesAfter) {
    Sound sound = Ident("blits", 14.5);
    Lose(sound, 8.5, 600);  // 50 periods of 1000 Hz: nothing shows there
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), Strings{"samples-lost"});
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), 600, 0.5);
    EXPECT_NEAR(findings.faults[0].at.value_or(0), 8.5, 1);
}

TEST(SoundEvents, OfASteadyToneAreKnownButForWholePeriods) {
    Sound sound = test::Tone(1000, 0.125, 8);
    Lose(sound, 4, 3 + 5 * 12);
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), Strings{"samples-lost"});
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), 3, 0.05);
}

// A sixteenth of a period more than 17 of them: no sample lies further from the tone than its harmonics do anyway.
TEST(SoundEvents, OfAToneWhoseTopsAreCutOffAreKnownByItsPhase) {
    constexpr double kFineRate = 48000;  // Hz
    Sound sound = test::Tone(1000, 0.125, 8, 2, kFineRate);
    for (auto& channel : sound) {
        channel.erase(channel.begin() + 187440, channel.begin() + 187440 + 17 * 48 + 3);
        std::ranges::for_each(channel, [](float& x) { x = std::clamp(x, -0.08F, 0.08F); });
    }
    lineup::CheckSettings settings;
    settings.expect = "tone";
    settings.frequencyHz = 1000;
    const auto findings = Check(sound, kFineRate, settings);
    ASSERT_EQ(Ids(findings), (Strings{"clipped", "samples-lost"}));
    EXPECT_NEAR(findings.faults[1].measured.value_or(0), 3, 0.05);
    EXPECT_NEAR(findings.faults[1].at.value_or(0), 3.905, 0.003);
}

}  // namespace
