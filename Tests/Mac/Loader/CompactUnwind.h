#pragma once

#include <cstdint>
#include <vector>

namespace test {

/// How a function is left when an exception passes through it.
struct UnwindEntry {
    std::uint64_t begin = 0;  ///< [begin, end), from the file's address 0
    std::uint64_t end = 0;
    std::uint32_t encoding = 0;      ///< see Unwinding.cpp; 0: nothing passes through
    std::uint64_t handlerTable = 0;  ///< what the personality reads, from the file's address 0; 0 for none
    std::uint64_t personality = 0;   ///< the address of a pointer to it, from the file's address 0; 0 for none
};

/// The entries of the section __unwind_info at `section`, in ascending order. Throws std::runtime_error for a form that
/// it does not have.
std::vector<UnwindEntry> ReadCompactUnwind(const std::uint8_t* section);

}  // namespace test
