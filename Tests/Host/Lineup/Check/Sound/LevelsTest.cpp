#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

namespace {

using test::Check;
using test::Ident;
using test::Ids;
using test::kRate;
using test::SampleAt;
using test::Sound;
using test::Strings;

void Leak(Sound& sound, std::size_t from, std::size_t into, float gain) {
    for (std::size_t n = 0; n < sound[into].size(); ++n) {
        sound[into][n] += gain * sound[from][n];
    }
}

// The closing tone has all channels, so that the leak makes the right one louder or softer there, and nowhere else.
TEST(Levels, AreNotSaidToMoveWhereALeakSoundsAlong) {
    Sound sound = Ident("blits", 14.4, 2.07);
    std::ranges::fill(sound[3], 0.0F);
    std::ranges::for_each(sound[1], [](float& x) { x = -x; });
    Leak(sound, 5, 1, 0.11F);
    EXPECT_EQ(Ids(Check(std::move(sound))), (Strings{"channel-mixed", "channel-missing", "polarity-inverted"}));
}

// The right surround never sounds without the left channel: how much of it is the leak is known at each moment from how
// loud that arrives then.
TEST(Levels, OfAChannelThatNeverSoundsAloneAreKnownBesideALeakAndAStep) {
    Sound sound = Ident("ebu-5.1", 12.7, 5.97);
    Leak(sound, 0, 5, 0.107F);
    for (auto& channel : sound) {
        std::for_each(channel.begin() + SampleAt(5.6), channel.end(), [](float& x) { x *= 0.61F; });
    }
    EXPECT_EQ(Ids(Check(std::move(sound))), (Strings{"channel-mixed", "level-changes"}));
}

// Its low tone has turned by half a period when it comes back after a cycle: both of them add up to nothing.
TEST(Levels, OfALowToneThatBeginsAnewInEachCycleAreThoseOfATone) {
    constexpr double kOther = 82.5;  // Hz
    Sound sound = Ident("blits", 14.6, 1.86);
    std::mt19937 random(3);
    std::normal_distribution<float> noise(0, 0.004F);
    for (const double on : {2.4 - 1.86, 2.4 + 13.4 - 1.86}) {
        for (std::ptrdiff_t n = 0; n < SampleAt(0.6); ++n) {
            const double turns = kOther * static_cast<double>(n) / kRate;
            sound[3][static_cast<std::size_t>(SampleAt(on) + n)] =
                static_cast<float>(0.125 * std::sin(2 * std::numbers::pi * turns));
        }
    }
    for (auto& channel : sound) {
        std::ranges::for_each(channel, [&](float& x) { x += noise(random); });
    }
    const Strings ids = Ids(Check(std::move(sound)));
    EXPECT_EQ(std::ranges::count(ids, "noise"), 1);
    EXPECT_EQ(std::ranges::count(ids, "channel-mixed"), 0);  // of a sum of channels that are all next to nothing
}

// Gain that goes up and down with the tone leaves a third harmonic across it, and costs the tone nothing, whatever its
// level. So the softer parts are louder for a reason of their own.
TEST(Levels, AreNotExplainedByTheHarmonicsOfGain) {
    constexpr double kFineRate = 48000;  // Hz
    constexpr float kSwing = 0.5F / (0.125F * 0.125F);
    Sound sound = Ident("blits", 14.5, 0, kFineRate);
    for (auto& channel : sound) {
        const std::vector<float> sent = channel;
        for (std::size_t n = 1; n + 1 < sent.size(); ++n) {
            channel[n] *= 1 + kSwing * sent[n] * (sent[n + 1] - sent[n - 1]);
        }
        std::for_each(channel.begin() + 489600, channel.begin() + 633600, [](float& x) { x *= 1.05F; });  // 10.2 s on
    }
    EXPECT_EQ(Ids(Check(std::move(sound), kFineRate)), Strings{"level-changes"});
}

}  // namespace
