// Programs that report on descriptor 3 as the process of a check does, rightly and wrongly.
#include <lineup/Error.h>
#include <lineup/Validation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>

namespace {

using lineup::validation::Finding;
using lineup::validation::Outcome;
using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr milliseconds kPlenty{60000};

Finding RunScript(const std::string& script, milliseconds timeout = kPlenty) {
    return lineup::validation::RunInChild({"/bin/sh", "-c", script}, timeout);
}

TEST(RunInChild, TakesOverWhatTheChildReports) {
    const Finding passed = RunScript("printf '<0>' >&3");
    EXPECT_EQ(passed.outcome, Outcome::Passed);
    EXPECT_THAT(passed.text, IsEmpty());
    const Finding failed = RunScript("printf '<2sample <5> is missing>' >&3");
    EXPECT_EQ(failed.outcome, Outcome::Failed);
    EXPECT_EQ(failed.text, "sample <5> is missing");
}

TEST(RunInChild, TakesNothingButAWholeReportForOne) {
    for (const char* const script : {
             "exit 0",                    // no report
             "printf '<0' >&3",           // cut short
             "printf '0>' >&3",           // without its beginning
             "printf '<>' >&3",           // without an outcome
             "printf '<7>' >&3",          // an unknown outcome
             "printf '<4>' >&3",          // one that only the parent can tell
             "printf '<0>\\n' >&3",       // more than a report
             "printf '<0>'",              // somewhere else
             "printf '<0>' >&3; exit 1",  // and then something went wrong
         }) {
        EXPECT_EQ(RunScript(script).outcome, Outcome::Crashed) << script;
    }
    EXPECT_THAT(RunScript("exit 7").text, HasSubstr("exit code 7"));
}

TEST(RunInChild, NamesTheSignalThatEndedTheChild) {
    const Finding segv = RunScript("kill -SEGV $$");
    EXPECT_EQ(segv.outcome, Outcome::Crashed);
    EXPECT_THAT(segv.text, HasSubstr("SIGSEGV (Segmentation fault)"));
    const Finding late = RunScript("printf '<0>' >&3; kill -ABRT $$");
    EXPECT_EQ(late.outcome, Outcome::Crashed);
    EXPECT_THAT(late.text, HasSubstr("SIGABRT"));
}

TEST(RunInChild, EndsAChildThatTakesTooLong) {
    const Finding finding = RunScript("printf '<0>' >&3; exec 3>&-; while :; do :; done", milliseconds(200));
    EXPECT_EQ(finding.outcome, Outcome::TimedOut);
    EXPECT_THAT(finding.text, HasSubstr("0.2 s"));
}

TEST(RunInChild, DoesNotWaitForWhatTheChildLeavesRunning) {
    // It keeps the descriptor open; the report is its process id.
    const Finding finding = RunScript("sleep 600 & printf '<2%s>' $! >&3");
    ASSERT_EQ(finding.outcome, Outcome::Failed);
    EXPECT_EQ(kill(std::stoi(finding.text), SIGKILL), 0);
}

TEST(RunInChild, KeepsWhatTheChildPrintsOffStandardOutput) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(RunScript("echo noise; printf '<0>' >&3").outcome, Outcome::Passed);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), IsEmpty());
}

TEST(RunInChild, ThrowsWhenThereIsNoSuchProgram) {
    EXPECT_THROW(static_cast<void>(lineup::validation::RunInChild({"/nowhere/program"}, kPlenty)), lineup::Error);
}

}  // namespace
