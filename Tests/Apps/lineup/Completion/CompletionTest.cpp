#include <lineup/Idents.h>
#include <lineup/Validation.h>
#include "Apps/lineup/Commands/CommandLine.h"
#include "Apps/lineup/Completion/Completion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;
using Names = cli::Completion::Names;
using Words = std::vector<std::string>;

cli::Completion Complete(const Words& words) {
    return cli::Complete(*cli::MakeCommandLine(), words);
}

Words WordsFor(const Words& words) {
    Words found;
    for (const cli::Candidate& candidate : Complete(words).candidates) {
        found.push_back(candidate.word);
    }
    return found;
}

TEST(Completion, BeginsWithTheCommands) {
    EXPECT_THAT(WordsFor({""}),
                ElementsAre("render", "send", "frame", "peaks", "info", "settings", "check", "validate"));
    EXPECT_THAT(WordsFor({"re"}), ElementsAre("render"));
    EXPECT_THAT(WordsFor({"--"}), ElementsAre("--help", "--version"));
}

TEST(Completion, KnowsTheOptionsOfACommand) {
    EXPECT_THAT(WordsFor({"info", "--"}),
                AllOf(IsSupersetOf({"--ident", "--json", "--plugin", "--help"}), Not(Contains("--timecode"))));
    EXPECT_THAT(WordsFor({"render", "a.mov", "--time"}), ElementsAre("--timecode"));
}

TEST(Completion, KnowsWhatAStreamCarries) {
    EXPECT_THAT(WordsFor({"send", "a.mov", "--audio-codec", ""}), ElementsAre("aac", "ac3", "mp2", "s302m", "none"));
    EXPECT_THAT(WordsFor({"send", "--video-codec", "m"}), ElementsAre("mpeg2", "mpeg2-422"));
}

TEST(Completion, OffersNoHiddenOption) {
    EXPECT_THAT(WordsFor({"validate", "--"}), Not(Contains("--run-check")));
}

TEST(Completion, OffersAnOptionOnce) {
    EXPECT_THAT(WordsFor({"render", "--card", "hd", "--ca"}), IsEmpty());
    EXPECT_THAT(WordsFor({"render", "--card=hd", "--ca"}), IsEmpty());
    EXPECT_THAT(WordsFor({"render", "-y", "--over"}), IsEmpty());
}

TEST(Completion, OffersAnOptionThatMayBeRepeatedAgain) {
    EXPECT_THAT(WordsFor({"validate", "--only", "audio-splits", "--on"}), ElementsAre("--only"));
}

TEST(Completion, OffersNoOptionThatAnotherExcludes) {
    EXPECT_THAT(WordsFor({"render", "--cycles", "1", "--du"}), IsEmpty());
    EXPECT_THAT(WordsFor({"render", "--duration", "1", "--cy"}), IsEmpty());
}

TEST(Completion, KnowsTheIdents) {
    Words idents;
    for (const lineup::Ident& ident : lineup::Idents()) {
        idents.emplace_back(ident.name);
    }
    EXPECT_EQ(WordsFor({"render", "a.mov", "--ident", ""}), idents);
    EXPECT_THAT(WordsFor({"peaks", "--ident", "bl"}), ElementsAre("blits"));
}

TEST(Completion, KnowsTheCards) {
    EXPECT_THAT(WordsFor({"frame", "--card", ""}), ElementsAre("auto", "hd", "sd"));
}

TEST(Completion, KnowsTheChecks) {
    EXPECT_EQ(WordsFor({"validate", "--only", ""}).size(), lineup::validation::Promises().size());
}

TEST(Completion, OffersTheCodecsThatTheFileCanHold) {
    EXPECT_THAT(WordsFor({"render", "a.mp4", "--video-codec", ""}), ElementsAre("h264"));
    EXPECT_THAT(WordsFor({"render", "a.wav", "--audio-codec", "pcm-s"}), ElementsAre("pcm-s24", "pcm-s16", "pcm-s32"));
    EXPECT_THAT(WordsFor({"render", "a.wav", "--video-codec", ""}), IsEmpty());
}

TEST(Completion, OffersEveryCodecBeforeTheFileIsNamed) {
    EXPECT_THAT(WordsFor({"render", "--video-codec", ""}), IsSupersetOf({"h264", "ffv1", "mpeg2-422"}));
}

TEST(Completion, TakesAValueThatIsJoinedToItsOption) {
    EXPECT_THAT(WordsFor({"render", "--ident=bl"}), ElementsAre("blits"));
}

TEST(Completion, TakesAValueThatTheShellHasTakenApart) {
    EXPECT_THAT(WordsFor({"render", "--ident", "=", "bl"}), ElementsAre("blits"));
    EXPECT_THAT(WordsFor({"render", "--card", "="}), ElementsAre("auto", "hd", "sd"));
    EXPECT_THAT(WordsFor({"render", "--card", "=", "hd", "--ca"}), IsEmpty());
}

TEST(Completion, LeavesNamesOfFilesAndFoldersToTheShell) {
    EXPECT_EQ(Complete({"render", ""}).names, Names::Files);
    EXPECT_EQ(Complete({"render", "a.mov", "--settings", ""}).names, Names::Files);
    EXPECT_EQ(Complete({"info", "--plugin", ""}).names, Names::Folders);
    EXPECT_EQ(Complete({"validate", ""}).names, Names::Folders);
    EXPECT_EQ(Complete({"render", "--card", ""}).names, Names::None);
}

TEST(Completion, GoesOnWithNamesWhereThereMayBeSeveral) {
    EXPECT_EQ(Complete({"check", ""}).names, Names::Files);
    EXPECT_EQ(Complete({"check", "a.wav", "b.wav", ""}).names, Names::Files);
    EXPECT_THAT(WordsFor({"check", "a.wav", "--exp"}), ElementsAre("--expect"));
}

TEST(Completion, KnowsTheLineupsAndTolerancesOfACheck) {
    EXPECT_THAT(WordsFor({"check", "--expect", "ebu-5"}), ElementsAre("ebu-5.1"));
    EXPECT_THAT(WordsFor({"check", "--card", ""}), ElementsAre("auto", "hd", "sd", "none"));
    EXPECT_THAT(WordsFor({"check", "--tolerance", "le"}), ElementsAre("level=0.1", "lengths=0.5"));
    EXPECT_THAT(WordsFor({"check", "--tolerance", "level=0.2", "--toler"}), ElementsAre("--tolerance"));
}

TEST(Completion, OffersOptionsWhenNothingElseIsLeft) {
    EXPECT_THAT(WordsFor({"render", "a.mov", ""}), AllOf(Not(IsEmpty()), Each(StartsWith("--"))));
}

TEST(Completion, TakesEveryWordAfterTwoDashesForAName) {
    EXPECT_EQ(Complete({"render", "--", "--ca"}).names, Names::Files);
    EXPECT_THAT(WordsFor({"render", "--", "a.mov", ""}), IsEmpty());
}

TEST(Completion, HasNothingToSayOfANumberOrAnUnknownCommand) {
    EXPECT_THAT(WordsFor({"render", "--level", ""}), IsEmpty());
    EXPECT_THAT(WordsFor({"dance", ""}), IsEmpty());
    EXPECT_THAT(WordsFor({"dance", "--"}), IsEmpty());
    EXPECT_THAT(WordsFor({}), IsEmpty());
}

TEST(Completion, SaysWhatAWordMeans) {
    const auto candidates = Complete({"render", "a.mov", "--video-codec", "v"}).candidates;
    ASSERT_EQ(candidates.size(), 1U);
    EXPECT_EQ(candidates[0].help, "uncompressed 4:2:2, 10 bits");
}

}  // namespace
