#include <lineup/services/ContractReporter.h>
#include "Host/Interface/Core/Contract.h"
#include "Src/ToneSettingsDialog/HandleToneSettingsDialog.h"
#include "Src/ToneSettingsDialog/LayoutNames.h"
#include "Tests/Support/EndChild.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kNotTraceable = 70;
constexpr int kErrorRaised = 71;
constexpr int kDebuggerNotSeen = 72;

// A process that violates the dialog's contract while its parent is its debugger.
[[noreturn]] void ViolateUnderDebugger(bool asksToBreak) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
        test::EndChild(kNotTraceable);
    }
    if (!zelcore::debug::IsDebuggerAttached()) {
        test::EndChild(kDebuggerNotSeen);
    }
    zelcore::debug::SetContractReporter([=](const zelcore::debug::ContractReport&) { return asksToBreak; });
    try {
        HandleToneSettingsDialog(kToneSettingsDialogID, {}, nullptr, nullptr);
    } catch (const std::runtime_error&) {
        test::EndChild(kErrorRaised);
    }
    test::EndChild(EXIT_SUCCESS);
}

bool EndedWith(int status, int code) {
    return WIFEXITED(status) && WEXITSTATUS(status) == code;
}

}  // namespace

class ContractViolation : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Reports, ContractViolation, testing::Bool(),
                         [](const auto& row) { return row.param ? "ThatAskForIt" : "ThatDoNot"; });

TEST_P(ContractViolation, StopsInTheDebuggerWhereTheReportAsksForItAndRaisesItsError) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ViolateUnderDebugger(GetParam());
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    if (EndedWith(status, kNotTraceable)) {
        GTEST_SKIP() << "processes may not be traced here";
    }
    if (GetParam()) {
        ASSERT_TRUE(WIFSTOPPED(status)) << status;
        EXPECT_EQ(WSTOPSIG(status), SIGTRAP);
        ASSERT_EQ(ptrace(PTRACE_CONT, child, nullptr, nullptr), 0);
        ASSERT_EQ(waitpid(child, &status, 0), child);
    }
    EXPECT_TRUE(EndedWith(status, kErrorRaised)) << status;
}
