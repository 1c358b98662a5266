#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <numbers>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using test::CodedSource;
using test::Ident;
using test::kRate;
using test::Lose;
using test::Repeat;
using test::SampleAt;
using test::Sound;
using test::Strings;

void Mute(std::vector<float>& channel, double from, double to) {
    std::fill(channel.begin() + SampleAt(from), channel.begin() + std::min(SampleAt(to), std::ssize(channel)), 0.0F);
}

void AddNoise(Sound& sound, double level) {
    std::mt19937 random(11);
    std::normal_distribution<float> noise(0, static_cast<float>(level));
    for (auto& channel : sound) {
        for (float& x : channel) {
            x += noise(random);
        }
    }
}

// Adds a third harmonic of `third` to a tone of the full level, and next to nothing else.
void Bend(Sound& sound, double third) {
    constexpr double kLevel = 0.125;
    for (auto& channel : sound) {
        for (float& x : channel) {
            const double height = static_cast<double>(x) / kLevel;
            x = static_cast<float>(kLevel * (height + third * (4 * height * height * height - 3 * height)));
        }
    }
}

// What a compressor of 4 to 1 does to all channels, by the power of the loudest over a millisecond and a half.
void Limit(Sound& sound, double rate) {
    constexpr double kThreshold = 0.0025;
    const double follow = 1 / (0.0015 * rate);
    double power = 0;
    for (std::size_t n = 0; n < sound.front().size(); ++n) {
        double loudest = 0;
        for (const auto& channel : sound) {
            loudest = std::max(loudest, static_cast<double>(channel[n]) * static_cast<double>(channel[n]));
        }
        power += (loudest - power) * (loudest > power ? follow : follow / 10);
        const double gain = power > kThreshold ? std::pow(power / kThreshold, -0.375) : 1;
        for (auto& channel : sound) {
            channel[n] = static_cast<float>(gain * static_cast<double>(channel[n]));
        }
    }
}

void Cut(Sound& sound, float top) {
    for (auto& channel : sound) {
        std::ranges::for_each(channel, [top](float& x) { x = std::clamp(x, -top, top); });
    }
}

// Keeps the pitch: of each quarter of a second, a hundredth goes.
void Retime(Sound& sound) {
    for (auto& channel : sound) {
        std::vector<float> kept;
        for (std::size_t n = 0; n < channel.size(); ++n) {
            if (n % 3000 < 2880) {
                kept.push_back(channel[n]);
            }
        }
        channel = kept;
    }
}

void Swing(Sound& sound, double depth, double hertz) {
    const double swing = depth * kRate / (2 * std::numbers::pi * hertz);
    for (auto& channel : sound) {
        const std::vector<float> still = channel;
        for (std::size_t n = 0; n + 100 < still.size(); ++n) {
            const double turns = 2 * std::numbers::pi * hertz * static_cast<double>(n) / kRate;
            const double at = static_cast<double>(n) + swing * (1 + std::sin(turns));
            const auto whole = static_cast<std::size_t>(at);
            const auto part = static_cast<float>(at - static_cast<double>(whole));
            channel[n] = (1 - part) * still[whole] + part * still[whole + 1];
        }
    }
}

constexpr double kSoundRate = 48000;  // Hz: harmonics fold onto each other at less

struct Damaged {
    const char* what;
    const char* ident;
    double from;  // s
    double seconds;
    std::function<void(Sound&)> damage;
    Strings faults;
    const char* note = "";  // that stands beside them
    std::map<std::string, double, std::less<>> tolerances = {};
    double rate = kRate;
};

const std::vector<Damaged> kDamaged = {
    {"time jumps where low frequency alone sounds, before the last edge",
     "ebu-5.1",
     1.44,
     12.7,
     [](Sound& sound) { Repeat(sound, 6.93, 481); },
     {"samples-repeated"}},
    {"what follows a jump is what was found",
     "blits",
     0,
     15,
     [](Sound& sound) { Lose(sound, 5.83, 812); },
     {"samples-lost"}},
    {"time jumps in the first burst, before one that is missing",
     "blits",
     0,
     14.6,
     [](Sound& sound) {
         Mute(sound[1], 0, 20);
         for (auto& channel : sound) {
             channel.insert(channel.begin(), 12000, 0.0F);
         }
         Lose(sound, 1.21, 590);
     },
     {"channel-missing", "samples-lost"}},
    {"noise over a channel that has lost its high tones, beside one that is missing",
     "blits",
     0,
     14.5,
     [](Sound& sound) {
         Mute(sound[2], 0, 20);
         Mute(sound[3], 10.1, 13.3);
         AddNoise(sound, 1e-5);
     },
     {"channel-missing"},
     "low-frequency-band-limited"},
    {"a leak of the channel that sounds alone, and clipping",
     "ebu-stereo-400",
     0,
     7.5,
     [](Sound& sound) {
         for (std::size_t n = 0; n < sound[0].size(); ++n) {
             sound[0][n] = std::clamp(sound[0][n] + 0.06F * sound[1][n], -0.07F, 0.07F);
             sound[1][n] = std::clamp(sound[1][n], -0.07F, 0.07F);
         }
     },
     {"channel-mixed", "clipped"}},
    {"harmonics under noise",
     "blits",
     0,
     14.5,
     [](Sound& sound) {
         Bend(sound, 0.0028);
         AddNoise(sound, 0.009);
     },
     {"noise", "distorted"},
     "",
     {},
     kSoundRate},
    {"a limiter",
     "blits",
     0,
     14.5,
     [](Sound& sound) { Limit(sound, kRate); },
     {"level-changes"},
     "distortion-not-known"},
    {"a limiter, and what bends tones",
     "blits",
     0,
     14.5,
     [](Sound& sound) {
         Limit(sound, kSoundRate);
         Bend(sound, 0.03);
     },
     {"level-changes", "distorted"},
     "",
     {},
     kSoundRate},
    {"a limiter, and tops that are cut off before it has followed the tone",
     "blits",
     0,
     14.5,
     [](Sound& sound) {
         Limit(sound, kSoundRate);
         Cut(sound, 0.09F);  // the tones themselves come to 0.076
     },
     {"level-changes", "clipped"},
     "",
     {},
     kSoundRate},
    {"a level that goes up at last, and tops that are cut off then",
     "ebu-stereo-1000",
     0,
     8,
     [](Sound& sound) {
         for (auto& channel : sound) {
             std::for_each(channel.begin() + 270000, channel.end(), [](float& x) { x *= 1.4F; });
         }
         Cut(sound, 0.15F);
     },
     {"level-changes", "clipped"},
     "",
     {},
     kSoundRate},
    {"a level that goes up, and what then bends tones the more",
     "ebu-5.1",
     0,
     12.5,
     [](Sound& sound) {
         for (auto& channel : sound) {
             std::for_each(channel.begin() + SampleAt(6.875), channel.end(), [](float& x) { x *= 1.67F; });
         }
         Bend(sound, 0.0038);
     },
     {"level-changes", "distorted"}},
    {"harmonics of the LFE where the hum of other mains would lie",
     "ebu-5.1",
     0,
     12.5,
     [](Sound& sound) {
         std::ranges::for_each(sound[3], [](float& x) { x *= 2.23F; });
         Bend(sound, 0.0177);
         for (auto& channel : sound) {
             for (std::size_t n = 0; n < channel.size(); ++n) {
                 const double turns = 50 * static_cast<double>(n) / kRate;
                 channel[n] += 0.002F * static_cast<float>(std::sin(2 * std::numbers::pi * turns));
             }
         }
     },
     {"level-unbalanced", "distorted", "hum"},
     "",
     {{"hum", -70}}},
    {"retiming that keeps the pitch", "ebu-5.1", 0, 14.5, Retime, {"speed-wrong"}, "polarity-not-known"},
    {"a dropout shortly before the gap that names the sequence",
     "ebu-stereo-1000",
     0,
     6,
     [](Sound& sound) {
         Mute(sound[0], 2.304, 2.496);
         Mute(sound[1], 2.304, 2.496);
     },
     {"dropout"}},
    {"a dropout that makes the last tone short, as retiming would",
     "ebu-stereo-1000",
     0,
     6,
     [](Sound& sound) {
         Mute(sound[0], 5.472, 5.568);
         Mute(sound[1], 5.472, 5.568);
     },
     {"dropout"}},
    {"wow",
     "ebu-stereo-1000",
     1.5,
     6.7,
     [](Sound& sound) { Swing(sound, 0.0038, 1.0); },
     {"speed-unsteady"},
     "",
     {{"distortion", -30}, {"level", 0.5}}},  // of lines between samples
};

TEST(Causes, AreNamedAndNoMore) {
    for (const Damaged& damaged : kDamaged) {
        Sound sound = Ident(damaged.ident, damaged.seconds, damaged.from, damaged.rate);
        damaged.damage(sound);
        lineup::CheckSettings settings;
        settings.tolerances = damaged.tolerances;
        const auto findings = test::Check(sound, damaged.rate, settings);
        EXPECT_EQ(test::Ids(findings), damaged.faults) << damaged.what;
        const auto isNote = [&](const lineup::CheckNote& note) { return note.id == damaged.note; };
        EXPECT_TRUE(*damaged.note == '\0' || std::ranges::any_of(findings.notes, isNote)) << damaged.what;
    }
}

// A codec that moves ends alone, by the same in each cycle: its right channel has no edges, and leans on the left
// one's.
TEST(Causes, WhereTheGapsOfACodecSayNothingNoChannelIsUpsideDown) {
    Sound sound = Ident("ebu-stereo-1000", 7);
    for (const double gap : {2.75, 5.75}) {
        Mute(sound[0], gap - 0.0009, gap);
    }
    CodedSource source(std::move(sound));
    const auto findings = lineup::CheckSound(source, test::Bundle(), {});
    EXPECT_EQ(test::Texts(findings), Strings());
    ASSERT_EQ(findings.sound.channels.size(), 2U);
    for (const lineup::ChannelReport& channel : findings.sound.channels) {
        EXPECT_FALSE(channel.polarity) << channel.input;
    }
}

// Takes up to a millisecond from both ends of each burst, of no two of them the same.
void Tear(std::vector<float>& channel) {
    int bursts = 0;
    int quiet = 0;
    for (std::ptrdiff_t n = 0; n < std::ssize(channel); ++n) {
        const bool sounds = channel[static_cast<std::size_t>(n)] != 0;
        if (sounds && quiet > SampleAt(0.05)) {
            const std::ptrdiff_t taken = 6 * (++bursts % 3);
            std::fill_n(channel.begin() + n, taken, 0.0F);
            const std::ptrdiff_t ended = n - quiet;
            std::fill(channel.begin() + std::max<std::ptrdiff_t>(ended - (12 - taken), 0), channel.begin() + ended,
                      0.0F);
            n += taken;
        }
        quiet = sounds ? 0 : quiet + 1;
    }
}

// Two know where they are, and differ: the others are as late as one of them, and not as their mean.
TEST(Causes, ChannelsWhoseEdgesACodecTearsLeanOnTheOneThatTheyAreNearTo) {
    Sound sound = Ident("blits", 14.5);
    for (std::size_t input = 0; input < sound.size(); ++input) {
        if (input == 2) {
            std::ranges::rotate(sound[input], sound[input].end() - SampleAt(0.004));
        } else if (input != 0) {
            Tear(sound[input]);
        }
    }
    CodedSource source(std::move(sound));
    EXPECT_EQ(test::Texts(lineup::CheckSound(source, test::Bundle(), {})),
              Strings{"C (input 3) is 48.00 samples (4.000 ms) late."});
}

// Both ends of the centre's only burst come early by as much: they agree with each other, and edges elsewhere say how
// little that means.
TEST(Causes, ABurstThatACodecMovesAsAWholeIsNotUpsideDown) {
    Sound sound = Ident("blits", 14.5);
    constexpr std::ptrdiff_t kEarly = 3;  // samples
    for (std::ptrdiff_t n = -kEarly; n < 0; ++n) {
        const double turns = 1320 * static_cast<double>(n) / kRate;
        sound[2][static_cast<std::size_t>(SampleAt(1.6) + n)] =
            static_cast<float>(0.125 * std::sin(2 * std::numbers::pi * turns));
        sound[2][static_cast<std::size_t>(SampleAt(2.2) + n)] = 0;
    }
    for (const std::size_t input : {0U, 3U, 5U}) {
        Tear(sound[input]);
    }
    CodedSource source(std::move(sound));
    EXPECT_EQ(test::Texts(lineup::CheckSound(source, test::Bundle(), {})), Strings());
}

// Of four inputs it is the noise of the delay that all count from, of two their own.
TEST(Causes, ADelayThatTheNoiseOfACodecMayHaveMadeIsNoFault) {
    Sound sound = test::Tone(1000, 0.125, 8, 6);
    for (std::size_t n = 0; n < sound[2].size(); ++n) {
        const double turns = 1000 * (static_cast<double>(n) - 0.75) / kRate;
        sound[2][n] = sound[3][n] = static_cast<float>(0.125 * std::sin(2 * std::numbers::pi * turns));
    }
    Sound few = {std::move(sound[2]), std::move(sound[3])};
    AddNoise(sound, 0.0091);
    AddNoise(few, 0.005);
    sound[2] = few[0];
    sound[3] = few[1];
    lineup::CheckSettings settings;
    settings.expect = "tone";
    settings.frequencyHz = 1000;
    CodedSource coded(sound);
    const auto ofCodec = test::Ids(lineup::CheckSound(coded, test::Bundle(), settings));
    EXPECT_EQ(std::ranges::count(ofCodec, "delay"), 0);
    const auto plain = test::Ids(test::Check(std::move(sound), kRate, settings));
    EXPECT_EQ(std::ranges::count(plain, "delay"), 1);
}

// Tones that sound at other times have of a swing what is not taken out of it.
TEST(Causes, ADelayThatIsFarLessThanWhatTheSpeedSwingsByIsNoFault) {
    for (const bool swings : {false, true}) {
        Sound sound = Ident("ebu-stereo-1000", 7.4);
        std::vector<float>& late = sound[1];
        for (std::size_t n = late.size() - 1; n > 0; --n) {
            late[n] = 0.3F * late[n] + 0.7F * late[n - 1];
        }
        if (swings) {
            Swing(sound, 0.0038, 0.6);
        }
        lineup::CheckSettings settings;
        settings.tolerances = {{"distortion", -30}, {"level", 0.5}};  // of lines between samples
        EXPECT_EQ(test::Ids(test::Check(std::move(sound), kRate, settings)),
                  Strings{swings ? "speed-unsteady" : "delay"});
    }
}

TEST(Causes, AGapBesideAToneOfHalfASecondNamesTheSequenceThoughACodecMovesIt) {
    Sound sound = Ident("ebu-stereo-400", 3.5, 0.1);
    Mute(sound[0], 2.642, 2.65);
    EXPECT_EQ(test::Check(std::move(sound)).sound.expected, "ebu-stereo-400");
}

// Edges know their sum alone.
TEST(Causes, JumpsBetweenTheSameEdgesAreKnownButForWholePeriods) {
    Sound sound = Ident("blits", 15);
    Lose(sound, 8.9, 245);
    Lose(sound, 8.3, 125);
    const auto findings = test::Check(sound);
    ASSERT_EQ(findings.faults.size(), 2U);
    double lost = 0;
    for (const lineup::CheckFault& fault : findings.faults) {
        EXPECT_NE(fault.text.find("or whole periods of the tone more or fewer"), std::string::npos) << fault.text;
        lost += fault.measured.value_or(0) * (fault.id == "samples-lost" ? 1 : -1);
    }
    EXPECT_NEAR(lost, 370, 0.5);
}

// What comes before the line-up is as loud, and ends anywhere.
TEST(Causes, ALineUpThatFollowsOtherSoundAtOnceHasNoClick) {
    Sound sound = test::Tone(1000, 0.125, 8, 2, kSoundRate);
    for (auto& channel : sound) {
        for (std::size_t n = 0; n < 96012; ++n) {
            channel[n] = n % 240 < 120 ? 0.125F : -0.125F;
        }
    }
    lineup::CheckSettings settings;
    settings.expect = "tone";
    settings.frequencyHz = 1000;
    EXPECT_EQ(test::Ids(test::Check(sound, kSoundRate, settings)), Strings());
}

}  // namespace
