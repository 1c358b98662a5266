#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

namespace {

using test::Check;
using test::Ident;
using test::Ids;
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

}  // namespace
