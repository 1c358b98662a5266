#pragma once

#include "Export.h"

/// How a plug-in reports that something it relies on does not hold.
namespace zelcore::debug {

/// Reports a failed precondition to the person at the machine, and returns whether the program should
/// stop in the debugger. What is shown, and where, is the host's own affair (see ContractReporter).
ZEL_API bool BreakAfterContractDialog(const char* condition, const char* file, const char* function, int line);

/// True when a debugger watches this process.
ZEL_API bool IsDebuggerAttached();

}  // namespace zelcore::debug
