#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

namespace {

using test::Check;
using test::Ident;
using test::Ids;
using test::kRate;
using test::Sound;
using test::Strings;

constexpr double kLevel = 0.125;

// Each sample of all channels becomes what `shape` makes of it and of its second.
void Reshape(Sound& sound, const std::function<double(double x, double second)>& shape) {
    for (auto& channel : sound) {
        for (std::size_t n = 0; n < channel.size(); ++n) {
            channel[n] = static_cast<float>(shape(static_cast<double>(channel[n]), static_cast<double>(n) / kRate));
        }
    }
}

struct Shape {
    const char* fault;
    double measured;
    double reach;
    const char* text;
    std::function<double(double x, double second)> shape;
};

double Hum(double hertz, double second) {
    return 0.004 * std::numbers::sqrt2 * std::sin(2 * std::numbers::pi * hertz * second);
}

const std::vector<Shape> kShapes = {
    {"clipped", 20 * std::log10(0.08), 0.05,
     "L, R, C, LFE, Ls and Rs (inputs 1, 2, 3, 4, 5 and 6) are cut off at -21.94 dBFS.",
     [](double x, double) { return std::clamp(x, -0.08, 0.08); }},
    // x^3 makes a third harmonic of a quarter of its factor.
    {"distorted", -40, 0.3, "L, R, C, LFE, Ls and Rs (inputs 1, 2, 3, 4, 5 and 6) have harmonics of -39.9 dB.",
     [](double x, double) { return x + 0.04 * x * x * x / (kLevel * kLevel) - 0.03 * x; }},
    {"hum", 20 * std::log10(0.004), 0.3, "Hum of 50 Hz, -47.9 dBFS, at inputs 1, 2, 3, 4, 5 and 6.",
     [](double x, double second) { return x + Hum(50, second); }},
    {"hum", 20 * std::log10(0.004), 0.3, "Hum of 60 Hz, -47.9 dBFS, at inputs 1, 2, 3, 4, 5 and 6.",
     [](double x, double second) { return x + Hum(60, second); }},
    {"level-changes", -3, 0.05, "The level goes down by 3.00 dB at 4.",
     [](double x, double second) { return second > 5.2 ? x * std::pow(10, -3.0 / 20) : x; }},
};

TEST(Shapes, AreNamedOnceAndMeasured) {
    for (const Shape& shape : kShapes) {
        Sound sound = Ident("blits", 14.5);
        Reshape(sound, shape.shape);
        const auto findings = Check(sound);
        ASSERT_EQ(Ids(findings), Strings{shape.fault});
        EXPECT_THAT(findings.faults[0].text, testing::HasSubstr(shape.text));
        EXPECT_NEAR(findings.faults[0].measured.value_or(0), shape.measured, shape.reach) << shape.fault;
    }
}

TEST(Shapes, TopsThatAreCutOffAreKnownWhereTheSoundLiesOffZero) {
    for (const bool before : {true, false}) {
        Sound sound = Ident("ebu-stereo-1000", 7.4);
        Reshape(sound, [&](double x, double) {
            return before ? std::clamp(x + 0.005, -0.11, 0.11) : std::clamp(x, -0.11, 0.11) + 0.02;
        });
        const auto findings = Check(sound);
        ASSERT_EQ(Ids(findings), (Strings{"dc-offset", "clipped"})) << before;
        EXPECT_NEAR(findings.faults[1].measured.value_or(0), 20 * std::log10(0.11), before ? 0.4 : 0.05) << before;
    }
}

TEST(Shapes, HarmonicsFarBelowTheNoiseOfACodecAreItsOwn) {
    Sound sound = Ident("blits", 14.5);
    std::minstd_rand random(1);
    std::uniform_real_distribution<double> noise(-0.06, 0.06);
    const double third = std::pow(10, -56.0 / 20);
    // Noise goes with the tone, as a codec's does, and lies 23 dB above the harmonic.
    Reshape(sound, [&](double x, double) {
        return x + third * (4 * x * x * x / (kLevel * kLevel) - 3 * x) + std::abs(x) * noise(random);
    });
    test::CodedSource coded(sound);
    EXPECT_EQ(std::ranges::count(Ids(lineup::CheckSound(coded, test::Bundle(), {})), "distorted"), 0);
    EXPECT_EQ(std::ranges::count(Ids(Check(std::move(sound))), "distorted"), 1);
}

TEST(Shapes, GainThatFollowsSomethingElseIsNamedOnceForAll) {
    Sound sound = Ident("blits", 14.5);
    Reshape(sound, [](double x, double second) {
        const double since = std::fmod(second, 2.0) - 1.5;
        return since > 0 ? x * (1 - 0.2 * std::exp(-since / 0.005)) : x;
    });
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), Strings{"level-changes"});
    EXPECT_NEAR(findings.faults[0].at.value_or(0), 3.5, 2.01);
}

TEST(Shapes, ALimiterBringsThePartsOfBlitsCloser) {
    Sound sound = Ident("blits", 14.5);
    // The closing tone, from 10.2 s of each cycle on, is soft enough to pass.
    Reshape(sound, [](double x, double second) { return std::fmod(second, 13.4) < 10 ? 0.7 * x : x; });
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), Strings{"level-changes"});
    EXPECT_NEAR(std::abs(findings.faults[0].measured.value_or(0)), -20 * std::log10(0.7), 0.05);
}

TEST(Shapes, WowIsASpeedThatWanders) {
    constexpr double kDepth = 0.002;
    constexpr double kHertz = 1.5;
    const Sound still = Ident("ebu-5.1", 14.5);
    Sound sound = still;
    for (std::size_t channel = 0; channel < sound.size(); ++channel) {
        for (std::size_t n = 0; n + 40 < sound[channel].size(); ++n) {
            const double swing = kDepth * kRate / (2 * std::numbers::pi * kHertz);
            const double at = static_cast<double>(n) +
                              swing * (1 + std::sin(2 * std::numbers::pi * kHertz * static_cast<double>(n) / kRate));
            const auto whole = static_cast<std::size_t>(at);
            const auto part = static_cast<float>(at - static_cast<double>(whole));
            sound[channel][n] = (1 - part) * still[channel][whole] + part * still[channel][whole + 1];
        }
    }
    lineup::CheckSettings settings;
    settings.tolerances = {{"distortion", -30}, {"level", 0.5}};  // of lines between samples
    const auto findings = Check(sound, kRate, settings);
    ASSERT_EQ(Ids(findings), Strings{"speed-unsteady"});
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), kDepth / std::numbers::sqrt2 * 1e6, 300);
}

// A tone of 1000 Hz in a file of 16 bits, in samples of `bits` bits.
lineup::SoundFindings CheckBits(double rate, int bits) {
    Sound sound = test::Tone(1000, kLevel, 6, 2, rate);
    for (auto& channel : sound) {
        for (float& x : channel) {
            x = static_cast<float>(std::ldexp(std::round(std::ldexp(x, bits - 1)), 1 - bits));
        }
    }
    lineup::CheckSettings settings;
    settings.expect = "tone";
    test::MemorySource source(std::move(sound), rate, 16);
    return lineup::CheckSound(source, test::Bundle(), settings);
}

TEST(Bits, ThatAreMissingAreCounted) {
    for (const auto& [rate, bits] :
         std::vector<std::pair<double, int>>{{48000, 15}, {44100, 15}, {48000, 12}, {8000, 10}}) {
        const auto findings = CheckBits(rate, bits);
        const Strings ids = Ids(findings);
        const auto place = std::ranges::find(ids, "bits-truncated") - ids.begin();
        ASSERT_LT(place, std::ssize(ids)) << rate << " Hz, " << bits << " bits";
        EXPECT_EQ(findings.faults[static_cast<std::size_t>(place)].measured, bits) << rate << " Hz";
    }
}

// 1000 Hz at 8 kHz has samples of 4096 and 2896 at this level: 12 bits say all that 16 can.
TEST(Bits, ThatAToneDoesNotNeedAreNotMissing) {
    for (const double rate : {8000.0, 16000.0, 48000.0}) {
        EXPECT_EQ(Ids(CheckBits(rate, 16)), Strings()) << rate << " Hz";
    }
}

}  // namespace
