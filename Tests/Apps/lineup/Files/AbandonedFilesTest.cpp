#include "Tests/Apps/lineup/Files/FolderWatch.h"
#include "Tests/Apps/lineup/Files/WritingProgram.h"

#include <csignal>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::UnorderedElementsAre;

// Works until it is ended.
const std::vector<std::string> kEndless = {TEST_LINEUP, "render",        "out.mkv", "--duration",
                                           "10:00:00",  "--video-codec", "ffv1",    "-y"};

class EndlessRender : public testing::Test {
protected:
    EndlessRender() {
        test::WriteFile(Folder() / "out.mkv", test::kPrecious);
        const test::FolderWatch watch(Folder());
        mProgram = std::make_unique<test::ChildProgram>(kEndless, Folder());
        watch.WaitForAWrite();  // it is made ...
        watch.WaitForAWrite();  // ... and written
    }
    [[nodiscard]] const std::filesystem::path& Folder() const { return mFolder.Path(); }
    [[nodiscard]] test::ChildProgram& Program() const { return *mProgram; }

    void ExpectTheEarlierFileAlone() const {
        EXPECT_EQ(test::ReadFile(Folder() / "out.mkv"), test::kPrecious);
        EXPECT_THAT(test::NamesIn(Folder()), ElementsAre("out.mkv"));
    }

private:
    test::TemporaryFolder mFolder;
    std::unique_ptr<test::ChildProgram> mProgram;
};

TEST_F(EndlessRender, SaysWhatItDidNotFinishAndEndsByTheSignalThatAskedItTo) {
    Program().Send(SIGTERM);
    const auto ending = Program().Wait();
    EXPECT_EQ(ending.signal, SIGTERM);
    EXPECT_EQ(ending.err, "lineup: cannot finish out.mkv: cancelled\n");
    ExpectTheEarlierFileAlone();
}

TEST_F(EndlessRender, EndsByEverySignalThatEndsAProgramAndTidiesUp) {
    for (const int signal : {SIGQUIT, SIGABRT, SIGUSR1, SIGALRM, SIGXCPU}) {
        const test::FolderWatch watch(Folder());
        test::ChildProgram program(kEndless, Folder());
        watch.WaitForAWrite();
        program.Send(signal);
        EXPECT_EQ(program.Wait().signal, signal);
    }
    Program().Send(SIGINT);
    EXPECT_EQ(Program().Wait().signal, SIGINT);
    ExpectTheEarlierFileAlone();
}

TEST_F(EndlessRender, LeavesARecognisableFileWhenItIsKilledThatTheNextRunRemoves) {
    Program().Send(SIGKILL);
    EXPECT_EQ(Program().Wait().signal, SIGKILL);
    EXPECT_THAT(test::NamesIn(Folder()), ElementsAre(MatchesRegex(test::kPartialName), "out.mkv"));
    EXPECT_EQ(test::ReadFile(Folder() / "out.mkv"), test::kPrecious);

    const auto next = test::RunChild({TEST_LINEUP, "settings", "tone.batn", "--defaults"}, Folder());
    EXPECT_EQ(next.exitCode, 0) << next.err;
    EXPECT_THAT(test::NamesIn(Folder()), ElementsAre("out.mkv", "tone.batn"));
}

TEST_F(EndlessRender, KeepsItsFileWhileOthersWriteBesideIt) {
    const auto other = test::RunChild({TEST_LINEUP, "frame", "card.png"}, Folder());
    EXPECT_EQ(other.exitCode, 0) << other.err;
    EXPECT_THAT(test::NamesIn(Folder()), ElementsAre(MatchesRegex(test::kPartialName), "card.png", "out.mkv"));
    EXPECT_TRUE(Program().IsRunning());
    Program().Send(SIGINT);
    EXPECT_THAT(Program().Wait().err, HasSubstr("cannot finish out.mkv"));
    EXPECT_THAT(test::NamesIn(Folder()), ElementsAre("card.png", "out.mkv"));
}

TEST(IgnoredSignals, StayIgnored) {
    const test::TemporaryFolder folder;
    const test::FolderWatch watch(folder.Path());
    test::ChildProgram program(kEndless, folder.Path(), [] { return std::signal(SIGHUP, SIG_IGN) != SIG_ERR; });
    watch.WaitForAWrite();
    program.Send(SIGHUP);
    watch.WaitForAWrite();
    EXPECT_TRUE(program.IsRunning());
    program.Send(SIGINT);
    EXPECT_EQ(program.Wait().signal, SIGINT);
}

}  // namespace
