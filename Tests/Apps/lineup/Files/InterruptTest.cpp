#include "Tests/Apps/lineup/Files/FolderWatch.h"
#include "Tests/Apps/lineup/Files/WritingProgram.h"

#include <algorithm>
#include <csignal>
#include <unistd.h>
#include <vector>

// What is still done of a large picture after Ctrl-C, in bytes that are written: no test waits for a clock.
namespace {

using testing::IsEmpty;

TEST(Interrupt, OfAStreamLetsTheFrameThatIsBeingWrittenEndAndNoOtherBegin) {
    constexpr std::size_t kFrameBytes = 3840UL * 2160 * 2;
    const test::TemporaryFolder folder;
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    test::ChildProgram program({TEST_LINEUP, "render", "-", "--format", "mkv", "--video-codec", "uyvy422", "--size",
                                "3840x2160", "--duration", "60", "--quiet"},
                               folder.Path(), [&] { return dup2(ends[1], STDOUT_FILENO) == STDOUT_FILENO; });
    close(ends[1]);
    std::vector<char> buffer(1 << 16);
    ssize_t count = read(ends[0], buffer.data(), 1);  // it waits now until more of the first frame is taken
    EXPECT_EQ(count, 1);
    program.Send(SIGINT);
    std::size_t after = 0;
    while ((count = read(ends[0], buffer.data(), buffer.size())) > 0) {
        after += static_cast<std::size_t>(count);
    }
    close(ends[0]);
    EXPECT_EQ(program.Wait().signal, SIGINT);
    EXPECT_LT(after, 2 * kFrameBytes);
}

// How often a render that is interrupted while its first picture is encoded writes after that. The program leaves
// nothing.
int WritesAfterInterrupt() {
    const test::TemporaryFolder folder;
    const test::FolderWatch watch(folder.Path());
    test::ChildProgram program(
        {TEST_LINEUP, "render", "out.mov", "--video-codec", "prores-4444", "--size", "4096x4096", "--duration", "60"},
        folder.Path());
    watch.WaitForAWriteWhileRuns(program);  // the hidden file is there, and the picture is drawn and encoded
    program.Send(SIGINT);
    EXPECT_EQ(program.Wait().signal, SIGINT);
    EXPECT_THAT(test::NamesIn(folder.Path()), IsEmpty());
    return static_cast<int>(watch.CountWrites());
}

TEST(Interrupt, InsideTheEncodingOfALargePictureWritesNothingAndLeavesNothing) {
    // On a busy machine a picture may be done before the signal comes: such a run says nothing.
    constexpr int kRuns = 3;
    int fewest = WritesAfterInterrupt();
    for (int run = 1; run < kRuns && fewest != 0; ++run) {
        fewest = std::min(fewest, WritesAfterInterrupt());
    }
    EXPECT_EQ(fewest, 0);
}

}  // namespace
