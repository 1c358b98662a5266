#include "Tests/Apps/lineup/Files/WritingProgram.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <random>
#include <tuple>

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;
using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

// A number from the environment: LINEUP_KILL_POINTS=300 tries so many moments for each writer and signal,
// LINEUP_KILL_SEED=2 tries others.
unsigned Setting(const char* name, unsigned usual) {
    const char* const text = std::getenv(name);
    return text == nullptr ? usual : static_cast<unsigned>(std::strtoul(text, nullptr, 10));
}

struct SignalName {
    int signal;
    const char* name;
};

class KilledProgram : public testing::TestWithParam<std::tuple<test::Writer, SignalName>> {
protected:
    [[nodiscard]] static const test::Writer& Writer() { return std::get<test::Writer>(GetParam()); }
    [[nodiscard]] static int Signal() { return std::get<SignalName>(GetParam()).signal; }
};

// Sends `signal` when `delay` has passed. The moment is the test's input; nothing is expected of the time.
test::Ending RunAndSend(const test::Writer& writer, const std::filesystem::path& folder, int signal,
                        microseconds delay) {
    test::ChildProgram program(writer.Command(), folder);
    const timespec pause{0, static_cast<long>(delay.count() * 1000)};
    nanosleep(&pause, nullptr);
    program.Send(signal);
    return program.Wait();
}

TEST_P(KilledProgram, LeavesTheEarlierFileOrTheWholeNewOne) {
    const test::TemporaryFolder reference;
    const auto start = Clock::now();
    ASSERT_EQ(test::RunChild(Writer().Command(), reference.Path()).exitCode, 0);
    const auto wholeRun = std::chrono::duration_cast<microseconds>(Clock::now() - start);
    const std::string whole = test::ReadFile(reference.Path() / Writer().target);

    const unsigned points = Setting("LINEUP_KILL_POINTS", 3);
    std::mt19937 random(Setting("LINEUP_KILL_SEED", 1));
    std::uniform_int_distribution<long> moment(0, std::min(wholeRun.count(), 999'999L));
    int endedBySignal = 0;
    int leftPartial = 0;
    int replaced = 0;
    for (unsigned i = 0; i < points; ++i) {
        const test::TemporaryFolder folder;
        const auto target = folder.Path() / Writer().target;
        test::WriteFile(target, test::kPrecious);
        const microseconds delay(moment(random));
        const auto ending = RunAndSend(Writer(), folder.Path(), Signal(), delay);
        SCOPED_TRACE("after " + std::to_string(delay.count()) + " microseconds of " + std::to_string(wholeRun.count()));
        EXPECT_TRUE(ending.signal == Signal() || ending.exitCode == 0)
            << "it ended " << (ending.signal != 0 ? "by signal " : "with status ")
            << (ending.signal != 0 ? ending.signal : ending.exitCode);
        endedBySignal += ending.signal != 0 ? 1 : 0;

        const std::string contents = test::ReadFile(target);
        EXPECT_TRUE(contents == test::kPrecious || contents == whole) << contents.size() << " bytes";
        replaced += contents == whole ? 1 : 0;
        if (Signal() == SIGKILL && test::NamesIn(folder.Path()).size() == 2) {
            EXPECT_THAT(test::NamesIn(folder.Path()), ElementsAre(MatchesRegex(test::kPartialName), Writer().target));
            ++leftPartial;
            EXPECT_EQ(test::RunChild(Writer().Command(), folder.Path()).exitCode, 0);
        }
        EXPECT_THAT(test::NamesIn(folder.Path()), ElementsAre(Writer().target));
    }
    RecordProperty("points", static_cast<int>(points));
    RecordProperty("endedBySignal", endedBySignal);
    RecordProperty("leftPartial", leftPartial);
    RecordProperty("replaced", replaced);
}

std::string NameOfRun(const testing::TestParamInfo<KilledProgram::ParamType>& run) {
    return std::string(std::get<0>(run.param).name) + std::get<1>(run.param).name;
}

INSTANTIATE_TEST_SUITE_P(Program, KilledProgram,
                         testing::Combine(testing::ValuesIn(test::Writers()),
                                          testing::Values(SignalName{SIGKILL, "Kill"}, SignalName{SIGINT, "Int"},
                                                          SignalName{SIGTERM, "Term"})),
                         NameOfRun);

}  // namespace
