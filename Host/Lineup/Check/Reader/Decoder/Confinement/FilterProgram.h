#pragma once

#include <cstddef>
#include <cstdint>
#include <linux/filter.h>
#include <vector>

namespace lineup::decoding {

/// A filter of system calls in the making: the first rule that fits a call decides. See seccomp(2).
class FilterProgram {
public:
    /// Begins with what holds for all calls: those of another architecture end the process.
    FilterProgram();

    void Allow(long call);
    /// The call fails with `error`.
    void Refuse(long call, int error);
    /// The call ends the process with SIGSYS.
    void Kill(long call);

    /// Allows the call when the low half of its argument `index`, masked, is `value`.
    void AllowIf(long call, unsigned index, std::uint32_t mask, std::uint32_t value);
    /// Allows the call when its argument `index` is null.
    void AllowIfNull(long call, unsigned index);

    /// Puts the filter into force for this process and all its threads; calls that no rule fits fail with EPERM. False
    /// when the kernel has no such filters.
    [[nodiscard]] bool Install();

private:
    void Add(std::uint16_t code, std::uint32_t value, std::size_t jumpIfTrue = 0, std::size_t jumpIfFalse = 0);
    void Decide(long call, std::uint32_t action);
    void LoadArgument(unsigned index, bool isHighHalf);

    std::vector<sock_filter> mProgram;
};

}  // namespace lineup::decoding
