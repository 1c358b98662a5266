#include "Tests/Host/Lineup/Check/Sound/SoundOf.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace {

using test::Check;
using test::Ident;
using test::Ids;
using test::kRate;
using test::Sound;
using test::Strings;
using test::Texts;
using testing::HasSubstr;

class CleanIdent : public testing::TestWithParam<const char*> {};

TEST_P(CleanIdent, IsRightWhereverTheRecordingBegins) {
    for (const double first : {0.0, 1.37, 8.2}) {
        const auto findings = Check(Ident(GetParam(), 14.5, first));
        EXPECT_EQ(findings.verdict, lineup::CheckVerdict::Right) << first;
        EXPECT_EQ(findings.sound.expected, GetParam()) << first;
        EXPECT_EQ(Ids(findings), Strings()) << first;
        ASSERT_TRUE(findings.sound.speed);
        EXPECT_NEAR(findings.sound.speed->ppm, 0, 0.1) << first;
        for (const lineup::ChannelReport& channel : findings.sound.channels) {
            EXPECT_NEAR(channel.level.value_or(0), 20 * std::log10(0.125), 0.02) << first;
            EXPECT_NEAR(channel.delay.value_or(9), 0, 0.05) << first;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, CleanIdent, testing::Values("ebu-stereo-1000", "ebu-stereo-400", "ebu-5.1", "blits"));

TEST(CheckSound, NamesASwappedPairOnceAndAChannelThatIsUpsideDown) {
    Sound sound = Ident("blits", 13.4);
    std::swap(sound[4], sound[5]);
    for (float& x : sound[2]) {
        x = -x;
    }
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), (Strings{"channels-swapped", "polarity-inverted"}));
    EXPECT_EQ(findings.faults[0].inputs, (std::vector<int>{4, 5}));
    EXPECT_EQ(findings.faults[0].channels, (Strings{"Rs", "Ls"}));
    EXPECT_EQ(findings.faults[1].inputs, (std::vector<int>{2}));
    EXPECT_EQ(Texts(findings), (Strings{"Ls and Rs are swapped (inputs 5 and 6).", "C (input 3) is upside down."}));
}

TEST(CheckSound, NamesTheOrdersThatChannelsComeIn) {
    struct Order {
        const char* name;
        std::array<std::size_t, 6> channels;  // of L, R, C, LFE, Ls, Rs
    };
    const Sound sound = Ident("ebu-5.1", 12);
    for (const Order& order : std::vector<Order>{
             {"The channels are in film order: inputs ", {0, 2, 1, 4, 5, 3}},
             {"The channels are in the order of AAC: inputs ", {2, 0, 1, 4, 5, 3}},
             {"The channels are in the order of DTS and of the plug-in: inputs ", {0, 1, 4, 5, 2, 3}},
             {"The channels are in SMPTE order with the surround pair before C: inputs ", {0, 1, 4, 5, 3, 2}},
         }) {
        Sound moved;
        for (const std::size_t channel : order.channels) {
            moved.push_back(sound[channel]);
        }
        const auto findings = Check(moved);
        ASSERT_EQ(Ids(findings), Strings{"channels-swapped"}) << order.name;
        EXPECT_THAT(findings.faults[0].text, HasSubstr(order.name));
    }
}

TEST(CheckSound, AssignsAnyPermutationWithAnyPolarity) {
    std::mt19937 random(17);
    for (const char* const name : {"blits", "ebu-5.1"}) {
        const Sound sound = Ident(name, 13.4);
        for (int round = 0; round < 10; ++round) {
            std::array<std::size_t, 6> order{};
            std::iota(order.begin(), order.end(), 0);
            std::shuffle(order.begin(), order.end(), random);
            Sound moved;
            std::vector<int> polarity;
            for (const std::size_t channel : order) {
                moved.push_back(sound[channel]);
                polarity.push_back(random() % 2 == 0 ? 1 : -1);
                for (float& x : moved.back()) {
                    x *= static_cast<float>(polarity.back());
                }
            }
            const auto findings = Check(moved);
            const std::array<const char*, 6> names = {"L", "R", "C", "LFE", "Ls", "Rs"};
            for (std::size_t input = 0; input < 6; ++input) {
                EXPECT_EQ(findings.sound.channels[input].channel.value_or("none"), names[order[input]]);
                EXPECT_EQ(findings.sound.channels[input].polarity.value_or(0), polarity[input]);
            }
        }
    }
}

TEST(CheckSound, ASilentChannelIsMissingAndNothingElse) {
    Sound sound = Ident("blits", 13.4);
    std::ranges::fill(sound[3], 0.0F);
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), Strings{"channel-missing"});
    EXPECT_EQ(findings.faults[0].channels, Strings{"LFE"});
    EXPECT_EQ(Texts(findings), Strings{"LFE is missing (input 4)."});
    EXPECT_FALSE(findings.sound.channels[3].channel);
    EXPECT_FALSE(findings.sound.channels[3].level);
}

TEST(CheckSound, AMissingChannelIsNamedWhereAnotherOnesInputIsSilent) {
    Sound sound = Ident("blits", 13.4);
    std::swap(sound[0], sound[4]);
    std::ranges::fill(sound[0], 0.0F);
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), (Strings{"channels-swapped", "channel-missing"}));
    EXPECT_EQ(findings.faults[0].inputs, std::vector<int>{4});
    EXPECT_EQ(Texts(findings), (Strings{"Input 5 holds L.", "Ls is missing (input 1)."}));
    EXPECT_EQ(findings.faults[1].inputs, std::vector<int>{0});
    EXPECT_EQ(findings.faults[1].channels, Strings{"Ls"});
}

TEST(CheckSound, FaintNoiseIsNoLeakOfAMissingChannel) {
    Sound sound = Ident("ebu-5.1", 12);
    std::mt19937 random(9);
    std::normal_distribution<float> noise(0, 1e-6F);
    std::ranges::fill(sound[2], 0.0F);
    for (float& x : sound[3]) {
        x += noise(random);
    }
    EXPECT_EQ(Ids(Check(sound)), Strings{"channel-missing"});
}

TEST(CheckSound, ACopyIsADuplicateAndNoMissingChannel) {
    Sound sound = Ident("blits", 13.4);
    sound[1] = sound[0];
    const auto findings = Check(sound);
    EXPECT_EQ(Ids(findings), Strings{"channel-duplicated"});
    EXPECT_EQ(Texts(findings), Strings{"L is at inputs 1 and 2."});
}

TEST(CheckSound, ALeakIsMeasured) {
    Sound sound = Ident("ebu-5.1", 12);
    for (std::size_t n = 0; n < sound[0].size(); ++n) {
        sound[2][n] += 0.01F * sound[0][n];
    }
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), Strings{"channel-mixed"});
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), -40, 0.1);
    EXPECT_EQ(Texts(findings), Strings{"L is also heard at input 3, 40.0 dB below where it belongs."});
}

TEST(CheckSound, ALeakOfAChannelThatIsMissingIsHeldAgainstTheOthers) {
    Sound sound = Ident("blits", 13.4);
    for (std::size_t n = 0; n < sound[0].size(); ++n) {
        sound[4][n] += 0.05F * sound[0][n];
    }
    std::ranges::fill(sound[0], 0.0F);
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), (Strings{"channel-mixed", "channel-missing"}));
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), 20 * std::log10(0.05), 0.1);
}

TEST(CheckSound, NoiseIsNoLeak) {
    Sound sound = Ident("ebu-5.1", 12);
    std::mt19937 random(4);
    std::normal_distribution<float> noise(0, 0.02F);
    for (auto& channel : sound) {
        for (float& x : channel) {
            x += noise(random);
        }
    }
    EXPECT_EQ(Ids(Check(sound)), Strings{"noise"});
}

TEST(CheckSound, ALeakDoesNotMakeAChannelTooLoud) {
    Sound sound = Ident("ebu-stereo-1000", 7);
    for (std::size_t n = 0; n < sound[0].size(); ++n) {
        sound[0][n] += 0.05F * sound[1][n];
    }
    EXPECT_EQ(Ids(Check(sound)), Strings{"channel-mixed"});
}

TEST(CheckSound, MeasuresDelaysUpToTwentyMilliseconds) {
    for (const int late : {-240, -1, 3, 240}) {
        Sound sound = Ident("blits", 13.4);
        std::vector<float> moved(sound[5].size());
        for (int n = 0; n < static_cast<int>(moved.size()); ++n) {
            const int from = n - late;
            if (from >= 0 && from < static_cast<int>(moved.size())) {
                moved[static_cast<std::size_t>(n)] = sound[5][static_cast<std::size_t>(from)];
            }
        }
        sound[5] = moved;
        const auto findings = Check(sound);
        ASSERT_EQ(Ids(findings), Strings{"delay"}) << late;
        EXPECT_THAT(findings.faults[0].text,
                    HasSubstr(fmt::format("{}.00 samples ({:.3f} ms) {}.", std::abs(late), std::abs(late) / 12.0,
                                          late > 0 ? "late" : "early")));
        EXPECT_NEAR(findings.faults[0].measured.value_or(0), late, 0.05);
    }
}

TEST(CheckSound, ChannelsThatAreLateByDifferentTimesAreNoRetiming) {
    Sound sound = Ident("ebu-5.1", 12);
    const std::array<std::size_t, 6> late = {220, 192, 184, 164, 129, 66};
    for (std::size_t input = 0; input < late.size(); ++input) {
        sound[input].insert(sound[input].begin(), late[input], 0.0F);
        sound[input].resize(sound.back().size());
    }
    const auto findings = Check(sound);
    ASSERT_TRUE(findings.sound.speed);
    EXPECT_NEAR(findings.sound.speed->ppm, 0, 0.5);
    for (std::size_t input = 0; input < late.size(); ++input) {  // 174: between 164 and 184
        EXPECT_NEAR(findings.sound.channels[input].delay.value_or(999), static_cast<double>(late[input]) - 174, 0.05);
    }
}

TEST(CheckSound, OneGainForAllIsNoImbalance) {
    Sound sound = Ident("blits", 13.4);
    for (auto& channel : sound) {
        for (float& x : channel) {
            x *= 0.8F;
        }
    }
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), Strings{"level-wrong"});
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), 20 * std::log10(0.8), 0.02);
    EXPECT_EQ(Texts(findings), Strings{"All channels are 1.94 dB too soft, as for an alignment level of -20 dBFS."});
}

TEST(CheckSound, NamesAWrongSampleRate) {
    const auto findings = Check(Ident("blits", 14.5), kRate * 44100 / 48000);
    ASSERT_EQ(Ids(findings), Strings{"speed-wrong"});
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), -81250, 0.1);
    EXPECT_EQ(findings.faults[0].text, "It plays 8.125 % too slowly: 48 kHz played as 44.1 kHz.");
}

TEST(CheckSound, NoiseAndDcAreMeasured) {
    Sound sound = Ident("blits", 13.4);
    std::mt19937 random(5);
    std::normal_distribution<float> noise(0, 0.003F);
    for (float& x : sound[1]) {
        x += noise(random);
    }
    for (float& x : sound[4]) {
        x += 0.01F;
    }
    const auto findings = Check(sound);
    ASSERT_EQ(Ids(findings), (Strings{"noise", "dc-offset"}));
    EXPECT_NEAR(findings.faults[0].measured.value_or(0), 20 * std::log10(0.003), 0.5);
    EXPECT_NEAR(findings.faults[1].measured.value_or(0), 0.01, 0.0002);
    EXPECT_EQ(findings.faults[1].text, "Ls (input 5) lies off zero by 0.0100 of full scale.");
    EXPECT_THAT(findings.faults[0].text, testing::MatchesRegex(R"(Noise of -50\.. dBFS at input 2\.)"));
}

TEST(CheckSound, AnotherSequenceThanTheOneAskedForIsAFault) {
    lineup::CheckSettings settings;
    settings.expect = "blits";
    const auto findings = Check(Ident("ebu-5.1", 14), kRate, settings);
    EXPECT_EQ(Ids(findings), Strings{"sequence-other"});
    EXPECT_EQ(Texts(findings), Strings{"This is ebu-5.1, not blits."});
}

TEST(CheckSound, IsNotCalledRightWhereAChannelWasNotHeard) {
    const auto findings = Check(Ident("blits", 4));
    EXPECT_EQ(Ids(findings), Strings());
    EXPECT_EQ(findings.verdict, lineup::CheckVerdict::CannotTell);
    ASSERT_FALSE(findings.notes.empty());
    EXPECT_EQ(findings.notes[0].id, "channels-not-heard");
    EXPECT_NE(findings.notes[0].text.find("Rs"), std::string::npos) << findings.notes[0].text;
}

TEST(CheckSound, FindsNothingInNoiseAndSilence) {
    std::mt19937 random(3);
    std::normal_distribution<float> noise(0, 0.1F);
    Sound sound(2, std::vector<float>(static_cast<std::size_t>(20 * kRate)));
    EXPECT_EQ(Check(sound).verdict, lineup::CheckVerdict::CannotTell);
    for (float& x : sound[0]) {
        x = noise(random);
    }
    const auto findings = Check(sound);
    EXPECT_EQ(findings.verdict, lineup::CheckVerdict::CannotTell);
    ASSERT_EQ(findings.notes.size(), 1U);
    EXPECT_EQ(findings.notes[0].id, "no-line-up");
}

}  // namespace
