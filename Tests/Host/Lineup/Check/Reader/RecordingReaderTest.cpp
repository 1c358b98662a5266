// What becomes of what a decoder says: samples, facts, and the way it ended.
#include <lineup/Error.h>
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Tests/Host/Lineup/Check/Reader/Messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace {

using lineup::RecordingReader;
using lineup::decoding::EndCause;
using lineup::decoding::MessageKind;
using test::Words;
using testing::ElementsAre;
using testing::HasSubstr;

const std::vector<float> kThree = {1, 2, 3};

std::unique_ptr<RecordingReader> Reader(const Words& words, const std::string& ending = "") {
    return std::make_unique<RecordingReader>(std::make_unique<test::MemoryInput>(words.Bytes()),
                                             [ending] { return ending; });
}

Words AfterTheStart() {
    return Words().Hello().Track(0).Begin(1);
}

std::vector<float> ReadToTheEnd(RecordingReader& reader, std::size_t most = 2) {
    std::vector<float> all;
    std::vector<float> block(most);
    const std::array<float*, 1> inputs = {block.data()};
    while (const std::size_t count = reader.Read(inputs, most)) {
        all.insert(all.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
    }
    return all;
}

TEST(RecordingReader, HandsOutWholeBlocksUpToTheEnd) {
    const auto reader = Reader(AfterTheStart().Samples(0, 0, {1}).Samples(0, 1, {2}).Samples(0, 2, {3}).End());
    std::vector<float> block(2);
    const std::array<float*, 1> inputs = {block.data()};
    EXPECT_EQ(reader->Read(inputs, 2), 2U);
    EXPECT_THAT(block, ElementsAre(1, 2));
    EXPECT_EQ(reader->Read(inputs, 2), 1U);
    EXPECT_EQ(reader->Read(inputs, 2), 0U);
    EXPECT_EQ(reader->EndedBecause(), std::nullopt);
    EXPECT_FALSE(reader->HasBrokenOff());
}

TEST(RecordingReader, KeepsWhatWasSaidBeforeTheDecoderCrashed) {
    const auto reader = Reader(AfterTheStart().Samples(0, 0, kThree), "it crashed (SIGSEGV, Segmentation fault)");
    EXPECT_THAT(ReadToTheEnd(*reader), ElementsAre(1, 2, 3));
    EXPECT_EQ(reader->EndedBecause(), "the decoder ended too early: it crashed (SIGSEGV, Segmentation fault)");
    EXPECT_TRUE(reader->HasBrokenOff());
}

TEST(RecordingReader, KeepsWhatWasSaidBeforeTheDecoderTalkedNonsense) {
    const auto reader = Reader(AfterTheStart().Samples(0, 0, kThree).Hello());
    EXPECT_THAT(ReadToTheEnd(*reader), ElementsAre(1, 2, 3));
    EXPECT_THAT(reader->EndedBecause().value_or(""), HasSubstr("the decoder talks nonsense"));
    EXPECT_TRUE(reader->HasBrokenOff());
}

TEST(RecordingReader, TellsWhatWentWrongFromARecordingThatIsOver) {
    struct Row {
        EndCause cause;
        bool isBroken;
    };
    for (const Row& row : {Row{EndCause::CutShort, true}, Row{EndCause::NoMemory, true}, Row{EndCause::Stalled, false},
                           Row{EndCause::RaggedEnd, false}}) {
        const auto reader = Reader(AfterTheStart().Samples(0, 0, kThree).End(row.cause));
        ReadToTheEnd(*reader);
        EXPECT_EQ(reader->EndedBecause(), "why");
        EXPECT_EQ(reader->HasBrokenOff(), row.isBroken) << static_cast<int>(row.cause);
    }
}

TEST(RecordingReader, SaysWhyNothingCanBeRead) {
    const auto why = [](const Words& words) -> std::string {
        try {
            static_cast<void>(Reader(words, "it crashed"));
        } catch (const lineup::Unreadable& unreadable) {
            return (unreadable.Reason() == lineup::Unreadable::Why::NoSound ? "no sound: " : "no recording: ") +
                   std::string(unreadable.what());
        }
        return "";
    };
    EXPECT_EQ(why(Words()), "no recording: the decoder ended too early: it crashed");
    EXPECT_EQ(why(Words().Hello().Track(0)), "no recording: the decoder ended too early: it crashed");
    EXPECT_EQ(why(Words().Hello().End(EndCause::NotOpened)), "no recording: why");
    EXPECT_EQ(why(Words().Hello().End(EndCause::NoSound)), "no sound: why");
    EXPECT_THAT(why(Words().Track(0)), HasSubstr("no recording: the decoder talks nonsense"));
}

TEST(RecordingReader, KnowsTheBitsThatAllTracksShare) {
    auto other = Words::RightTrack(1);
    other.bits = 16;
    EXPECT_EQ(Reader(Words().Hello().Track(0).Track(1).Begin(2))->Bits(), 24);
    EXPECT_EQ(Reader(Words().Hello().Track(0).Add(MessageKind::Track, other).Begin(2))->Bits(), std::nullopt);
}

TEST(RecordingReader, IsLossyWhereOneTrackIs) {
    auto lossy = Words::RightTrack(1);
    lossy.flags = lineup::decoding::kLossy;
    auto unknown = Words::RightTrack(1);
    unknown.flags = 0;
    EXPECT_EQ(Reader(AfterTheStart())->Lossy(), false);
    EXPECT_EQ(Reader(Words().Hello().Track(0).Add(MessageKind::Track, lossy).Begin(2))->Lossy(), true);
    EXPECT_EQ(Reader(Words().Hello().Track(0).Add(MessageKind::Track, unknown).Begin(2))->Lossy(), std::nullopt);
}

TEST(RecordingReader, SaysWhichRightsTheDecoderHasKept) {
    EXPECT_THAT(Reader(AfterTheStart())->Notes(), testing::IsEmpty());
    auto hello = Words::RightHello();
    hello.givenUp = lineup::decoding::kMemory;
    const auto notes = Reader(Words().Add(MessageKind::Hello, hello).Track(0).Begin(1))->Notes();
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].id, "decoder-not-confined");
    EXPECT_THAT(notes[0].text, testing::AllOf(HasSubstr("seccomp"), HasSubstr("Landlock"),
                                              testing::Not(HasSubstr("memory has no limit"))));
}

}  // namespace
