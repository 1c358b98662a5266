#pragma once

/// Reports to the person at the machine that `condition` does not hold in `function`, stops in the
/// debugger when the report asks for it and one is attached, and throws the host's error for a violated
/// input contract. `line` is the source line of the check.
[[noreturn]] void RaiseContractViolation(const char* condition, const char* function, int line);
