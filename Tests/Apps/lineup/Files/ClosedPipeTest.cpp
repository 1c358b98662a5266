#include "Tests/Apps/lineup/Files/WritingProgram.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

using testing::IsEmpty;

// Standard output of the child becomes a pipe that nobody reads.
bool PrintToAClosedPipe() {
    int ends[2] = {-1, -1};
    return pipe(ends) == 0 && dup2(ends[1], STDOUT_FILENO) == STDOUT_FILENO && close(ends[0]) == 0 &&
           close(ends[1]) == 0;
}

bool PrintToAFullDevice() {
    return dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO) == STDOUT_FILENO;
}

bool HaveNoStreams() {
    return close(STDIN_FILENO) == 0 && close(STDOUT_FILENO) == 0 && close(STDERR_FILENO) == 0;
}

class PrintingProgram : public testing::TestWithParam<std::vector<std::string>> {
protected:
    [[nodiscard]] test::Ending Run(const test::ChildProgram::Preparation& preparation) const {
        std::vector<std::string> command = {TEST_LINEUP};
        command.insert(command.end(), GetParam().begin(), GetParam().end());
        return test::RunChild(command, mFolder.Path(), preparation);
    }

private:
    test::TemporaryFolder mFolder;
};

TEST_P(PrintingProgram, AClosedPipeIsSaid) {
    const auto ending = Run(PrintToAClosedPipe);
    EXPECT_EQ(ending.exitCode, 1) << "signal " << ending.signal;
    EXPECT_EQ(ending.err, "lineup: cannot write to standard output: Broken pipe\n");
}

TEST_P(PrintingProgram, AFullDeviceIsSaid) {
    const auto ending = Run(PrintToAFullDevice);
    EXPECT_EQ(ending.exitCode, 1);
    EXPECT_EQ(ending.err, "lineup: cannot write to standard output: No space left on device\n");
}

TEST_P(PrintingProgram, AnOutputThatIsNotThereIsSaid) {
    const auto ending = Run([] { return close(STDOUT_FILENO) == 0; });
    EXPECT_EQ(ending.exitCode, 1);
    EXPECT_EQ(ending.err, "lineup: cannot write to standard output: Bad file descriptor\n");
}

// The last prints more than fits into the buffer of the stream: it is printing that fails, before the end.
INSTANTIATE_TEST_SUITE_P(Program, PrintingProgram,
                         testing::Values(std::vector<std::string>{"info"}, std::vector<std::string>{"info", "--json"},
                                         std::vector<std::string>{"--help"}, std::vector<std::string>{"--version"},
                                         std::vector<std::string>{"check", "--help"}));

class ClosedPipe : public test::WritingProgram {};

// The file is whole: what is lost is the sentence about it.
TEST_P(ClosedPipe, AFileIsWrittenThoughNobodyReadsTheReport) {
    const test::TemporaryFolder elsewhere;
    ASSERT_EQ(test::RunChild(GetParam().Command(), elsewhere.Path()).exitCode, 0);
    ExpectSentence(Run(PrintToAClosedPipe), "cannot write to standard output: Broken pipe");
    EXPECT_THAT(test::NamesIn(Folder()), testing::ElementsAre(GetParam().target));
    EXPECT_EQ(test::ReadFile(Target()), test::ReadFile(elsewhere.Path() / GetParam().target));
}

// A file opened in the place of a stream would get what is printed to that stream.
TEST_P(ClosedPipe, AFileWrittenWithoutStreamsHoldsNothingThatWasPrinted) {
    const test::TemporaryFolder elsewhere;
    ASSERT_EQ(test::RunChild(GetParam().Command(), elsewhere.Path()).exitCode, 0);
    EXPECT_EQ(Run(HaveNoStreams).exitCode, 1);
    EXPECT_EQ(test::ReadFile(Target()), test::ReadFile(elsewhere.Path() / GetParam().target));
}

INSTANTIATE_TEST_SUITE_P(Program, ClosedPipe, testing::ValuesIn(test::Writers()), test::NameOf);

}  // namespace
