#pragma once

#include <lineup/interface/Core/Export.h>

#include <functional>

namespace zelcore::debug {

/// A precondition that does not hold, and where it was asked for. The texts live as long as the call.
struct ContractReport {
    const char* condition;
    const char* file;
    const char* function;
    int line;
};

/// What shows a report to the person at the machine. Returns whether the program should stop in the
/// debugger. Called on the thread that found the violation.
using ContractReporter = std::function<bool(const ContractReport&)>;

/// Makes `reporter` the one in use and returns the one before. An empty one stands for the reporter in
/// use at first, which prints to the standard error stream and never asks to stop. Any thread.
ZEL_API ContractReporter SetContractReporter(ContractReporter reporter);

}  // namespace zelcore::debug
