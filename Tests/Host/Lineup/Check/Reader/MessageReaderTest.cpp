// What a decoder may say, and all the ways in which it can be caught lying.
#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"
#include "Tests/Host/Lineup/Check/Reader/Messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using lineup::DecodedSamples;
using lineup::DecoderMessage;
using lineup::MessageReader;
using lineup::decoding::EndCause;
using lineup::decoding::MessageKind;
using test::Words;
using testing::ElementsAre;
using testing::HasSubstr;

// Everything up to the end of what is said; what is wrong with it, if something is.
std::string ReadAll(const Words& words, std::size_t most = 1U << 20) {
    test::MemoryInput input(words.Bytes(), most);
    MessageReader reader(input);
    try {
        while (reader.Next()) {
        }
    } catch (const lineup::DecoderTalksNonsense& error) {
        return error.what();
    }
    return "";
}

Words Started(std::uint32_t channels = 1) {
    return Words().Hello().Track(0, channels).Begin(1);
}

template <class Body>
Words StartedWith(MessageKind kind, const Body& body) {
    return Started().Add(kind, body);
}

TEST(MessageReader, HandsOutWhatIsSaidInItsOrder) {
    test::MemoryInput input(Words().Hello().Track(0, 2).Begin(1).Samples(0, 7, {1, 2, 3, 4}, 2).End().Bytes());
    MessageReader reader(input);
    EXPECT_EQ(std::get<lineup::decoding::Hello>(reader.Next().value()).givenUp, lineup::decoding::kEverything);
    EXPECT_EQ(std::get<lineup::decoding::Track>(reader.Next().value()).sampleRate, 48000U);
    EXPECT_EQ(std::get<lineup::decoding::Begin>(reader.Next().value()).tracks, 1U);
    const DecoderMessage message = reader.Next().value();
    const auto& samples = std::get<DecodedSamples>(message);
    EXPECT_EQ(samples.head.position, 7);
    EXPECT_EQ(samples.head.count, 2U);
    EXPECT_THAT(samples.values, ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(std::get<lineup::decoding::End>(reader.Next().value()).cause, 0U);
    EXPECT_FALSE(reader.Next().has_value());
}

TEST(MessageReader, PutsTogetherWhatArrivesInPieces) {
    std::vector<float> many(100000, 0.5F);
    const Words words = Started().Samples(0, 0, many).Samples(0, 100000, many).End();
    for (const std::size_t most : {1U, 7U, 4096U}) {
        test::MemoryInput input(words.Bytes(), most);
        MessageReader reader(input);
        std::size_t samples = 0;
        while (const auto message = reader.Next()) {
            if (const auto* const block = std::get_if<DecodedSamples>(&*message)) {
                EXPECT_EQ(block->values.back(), 0.5F);
                samples += block->values.size();
            }
        }
        EXPECT_EQ(samples, 200000U);
    }
}

TEST(MessageReader, EndsWhereTheInputEndsInTheMiddleOfAMessage) {
    std::vector<std::byte> bytes = Started().Samples(0, 0, {1, 2, 3}).Bytes();
    bytes.resize(bytes.size() - 1);
    test::MemoryInput input(bytes);
    MessageReader reader(input);
    int messages = 0;
    while (reader.Next()) {
        ++messages;
    }
    EXPECT_EQ(messages, 3);
}

TEST(MessageReader, HearsNothingAfterTheEnd) {
    EXPECT_EQ(ReadAll(Words().Hello().End().Samples(9, -1, {1})), "");
}

TEST(MessageReader, TakesNoMessageOutOfItsPlace) {
    EXPECT_THAT(ReadAll(Words().Track(0)), HasSubstr("it greets at the beginning"));
    EXPECT_THAT(ReadAll(Words().Hello().Hello()), HasSubstr("it greets at the beginning"));
    EXPECT_THAT(ReadAll(Words().Hello().Samples(0, 0, {1})), HasSubstr("samples are of no track"));
    EXPECT_THAT(ReadAll(Words().Hello().Track(0).Samples(0, 0, {1})), HasSubstr("samples are of no track"));
    EXPECT_THAT(ReadAll(Started().Track(1)), HasSubstr("tracks are named once"));
    EXPECT_THAT(ReadAll(Started().Begin(1)), HasSubstr("begins without the tracks"));
    EXPECT_THAT(ReadAll(Words().Hello().Begin(0)), HasSubstr("begins without the tracks"));
    EXPECT_THAT(ReadAll(Words().Hello().Track(0).Begin(2)), HasSubstr("begins without the tracks"));
    EXPECT_THAT(ReadAll(Words().Hello().Track(1)), HasSubstr("tracks are named once"));
}

TEST(MessageReader, TakesNoMessageOfAnotherKindOrSize) {
    EXPECT_THAT(ReadAll(Words().Hello().Add(MessageKind{13}, 0.0)), HasSubstr("of no known kind"));
    EXPECT_THAT(ReadAll(Words().Hello().Add(MessageKind{0}, 0.0)), HasSubstr("of no known kind"));
    EXPECT_THAT(ReadAll(Words().Hello().Add(MessageKind::Track, 0.0)), HasSubstr("another size"));
    EXPECT_THAT(ReadAll(Words().Add(MessageKind::Hello, char{1})), HasSubstr("no possible size"));
    EXPECT_THAT(ReadAll(Words().Hello().Header(MessageKind::Reading, 0xfffffffc)), HasSubstr("no possible size"));
    std::vector<float> tooMany(lineup::decoding::kMostValues + 1);
    EXPECT_THAT(ReadAll(Started().Samples(0, 0, tooMany)), HasSubstr("no possible size"));
}

TEST(MessageReader, TakesNoGreetingOfAnotherVersion) {
    auto hello = Words::RightHello();
    hello.version = lineup::decoding::kProtocolVersion + 1;
    EXPECT_THAT(ReadAll(Words().Add(MessageKind::Hello, hello)), HasSubstr("of another version"));
}

TEST(MessageReader, TakesNoImpossibleTrack) {
    const auto withTrack = [](const std::function<void(lineup::decoding::Track&)>& change) {
        auto track = Words::RightTrack(0);
        change(track);
        return ReadAll(Words().Hello().Add(MessageKind::Track, track));
    };
    EXPECT_EQ(withTrack([](auto&) {}), "");
    EXPECT_THAT(withTrack([](auto& track) { track.channels = 0; }), HasSubstr("possible channels"));
    EXPECT_THAT(withTrack([](auto& track) { track.channels = 65; }), HasSubstr("possible channels"));
    EXPECT_THAT(withTrack([](auto& track) { track.sampleRate = 0; }), HasSubstr("possible sample rate"));
    EXPECT_THAT(withTrack([](auto& track) { track.recordedRate = 0xffffffff; }), HasSubstr("possible sample rate"));
    EXPECT_THAT(withTrack([](auto& track) { track.bits = 65; }), HasSubstr("possible kind"));
    EXPECT_THAT(withTrack([](auto& track) { track.flags = 3; }), HasSubstr("possible kind"));
}

TEST(MessageReader, TakesNoMoreChannelsThanThereMayBe) {
    EXPECT_EQ(ReadAll(Words().Hello().Track(0, 60).Track(1, 4)), "");
    EXPECT_THAT(ReadAll(Words().Hello().Track(0, 60).Track(1, 5)), HasSubstr("possible channels"));
}

TEST(MessageReader, TakesNoTracksOfDifferentRates) {
    auto other = Words::RightTrack(1);
    other.sampleRate = 44100;
    EXPECT_THAT(ReadAll(Words().Hello().Track(0).Add(MessageKind::Track, other)), HasSubstr("different sample rates"));
}

TEST(MessageReader, TakesNoLengthThatIsNoNumber) {
    for (const double seconds :
         {-1.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        auto begin = Words::RightBegin(1);
        begin.seconds = seconds;
        EXPECT_THAT(ReadAll(Words().Hello().Track(0).Add(MessageKind::Begin, begin)), HasSubstr("number of seconds"));
    }
}

TEST(MessageReader, TakesNoSamplesOfOtherTracksOrChannels) {
    EXPECT_THAT(ReadAll(Started().Samples(1, 0, {1})), HasSubstr("of no track"));
    EXPECT_THAT(ReadAll(Started(2).Samples(0, 0, {1}, 1)), HasSubstr("other channels than their track"));
    EXPECT_THAT(ReadAll(Started().Samples(0, 0, {})), HasSubstr("other channels than their track"));
    lineup::decoding::Samples head{.track = 0, .channels = 1, .count = 3, .reserved = 0, .position = 0};
    EXPECT_THAT(ReadAll(Started().Add(MessageKind::Samples, head, std::vector<float>{1, 2})),
                HasSubstr("another size than it says"));
    head.count = 0xffffffff;
    EXPECT_THAT(ReadAll(Started().Add(MessageKind::Samples, head, std::vector<float>{1, 2})),
                HasSubstr("another size than it says"));
}

TEST(MessageReader, TakesNoSamplesAtImpossiblePlaces) {
    constexpr std::int64_t kRate = 48000;
    EXPECT_THAT(ReadAll(Started().Samples(0, -1, {1})), HasSubstr("no possible place"));
    EXPECT_THAT(ReadAll(Started().Samples(0, 0, {1, 2}).Samples(0, 1, {3})), HasSubstr("no possible place"));
    EXPECT_EQ(ReadAll(Started().Samples(0, 86400 * kRate, {1})), "");
    EXPECT_THAT(ReadAll(Started().Samples(0, 86400 * kRate + 1, {1})), HasSubstr("no possible place"));
    EXPECT_EQ(ReadAll(Started().Samples(0, 0, {1}).Samples(0, 1 + 10 * kRate, {1})), "");
    EXPECT_THAT(ReadAll(Started().Samples(0, 0, {1}).Samples(0, 2 + 10 * kRate, {1})), HasSubstr("no possible place"));
    EXPECT_THAT(ReadAll(Started().Samples(0, std::numeric_limits<std::int64_t>::max(), {1})),
                HasSubstr("no possible place"));
}

TEST(MessageReader, TakesNoImpossibleDamage) {
    const lineup::decoding::Damage right{.track = 0, .reserved = 0, .position = 5, .count = 0, .reason = {}};
    EXPECT_EQ(ReadAll(StartedWith(MessageKind::Damage, right)), "");
    auto damage = right;
    damage.track = 1;
    EXPECT_THAT(ReadAll(StartedWith(MessageKind::Damage, damage)), HasSubstr("damage is of no track"));
    damage = right;
    damage.position = -1;
    EXPECT_THAT(ReadAll(StartedWith(MessageKind::Damage, damage)), HasSubstr("damage is at no possible place"));
    damage = right;
    damage.count = std::numeric_limits<std::int64_t>::min();
    EXPECT_THAT(ReadAll(StartedWith(MessageKind::Damage, damage)), HasSubstr("damage is at no possible place"));
}

TEST(MessageReader, TakesNoSignOfWorkWithoutWork) {
    using lineup::decoding::Reading;
    EXPECT_EQ(ReadAll(Words().Hello().Add(MessageKind::Reading, Reading{1}).Add(MessageKind::Reading, Reading{2})), "");
    EXPECT_THAT(ReadAll(Words().Hello().Add(MessageKind::Reading, Reading{2}).Add(MessageKind::Reading, Reading{2})),
                HasSubstr("goes on without going on"));
}

TEST(MessageReader, TakesNoArrivalAtNoPossiblePlaceOrTime) {
    using lineup::decoding::Arrival;
    const Arrival right{.position = 7, .stamp = -1, .arrived = 2};
    const auto said = [&](const Arrival& second) {
        return ReadAll(StartedWith(MessageKind::Arrival, right).Add(MessageKind::Arrival, second));
    };
    EXPECT_EQ(said(right), "");
    EXPECT_THAT(said({.position = -1, .stamp = 0, .arrived = 2}), HasSubstr("no possible place"));
    EXPECT_THAT(said({.position = 7, .stamp = 0, .arrived = 1.9}), HasSubstr("no possible time"));
    EXPECT_THAT(said({.position = 7, .stamp = std::nan(""), .arrived = 2}), HasSubstr("no possible time"));
    EXPECT_THAT(said({.position = 7, .stamp = 0, .arrived = std::nan("")}), HasSubstr("no possible time"));
    EXPECT_THAT(ReadAll(Words().Hello().Add(MessageKind::Arrival, right)), HasSubstr("for no track"));
}

TEST(MessageReader, TakesNoEndForAnUnknownCause) {
    EXPECT_EQ(ReadAll(Words().Hello().End(EndCause::RaggedEnd)), "");
    EXPECT_THAT(ReadAll(Words().Hello().End(EndCause{7})), HasSubstr("no known cause"));
}

TEST(MessageReader, LeavesNothingInATextThatATerminalWouldObey) {
    EXPECT_EQ(lineup::FieldText(std::string("\x1b[2J caf\xc3\xa9 ~\n\0x", 16)), "?[2J caf?? ~?");
    EXPECT_EQ(lineup::FieldText(std::string("whole")), "whole");
}

}  // namespace
