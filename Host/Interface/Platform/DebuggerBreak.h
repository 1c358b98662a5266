#pragma once

#if defined(__aarch64__) && defined(__linux__)
#include <csignal>
#endif

/// Stops in the debugger that watches this process, which may go on afterwards. Without a debugger the
/// process ends.
inline void DebuggerBreak() noexcept {
#if defined(__x86_64__)
    __asm__ volatile("int3");
#elif defined(__aarch64__) && defined(__linux__)
    static_cast<void>(std::raise(SIGTRAP));  // a process that goes on after an instruction for it meets that again
#elif defined(__aarch64__)
    __asm__ volatile("brk #0xf000");
#else
    __builtin_trap();
#endif
}
