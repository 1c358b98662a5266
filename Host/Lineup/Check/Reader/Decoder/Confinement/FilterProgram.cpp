#include "Host/Lineup/Check/Reader/Decoder/Confinement/FilterProgram.h"

#include <cerrno>
#include <cstddef>
#include <linux/audit.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace lineup::decoding {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kArchitecture = 0;  // no filter
#endif

constexpr std::uint32_t kOtherCalls = 0x40000000;  // x32's have this bit

constexpr std::uint32_t Failure(int error) {
    return SECCOMP_RET_ERRNO | (static_cast<std::uint32_t>(error) & SECCOMP_RET_DATA);
}

}  // namespace

FilterProgram::FilterProgram() {
    Add(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, arch));
    Add(BPF_JMP | BPF_JEQ | BPF_K, kArchitecture, 1, 0);
    Add(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS);
    Add(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
    Add(BPF_JMP | BPF_JGE | BPF_K, kOtherCalls, 0, 1);
    Add(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS);
}

void FilterProgram::Add(std::uint16_t code, std::uint32_t value, std::size_t jumpIfTrue, std::size_t jumpIfFalse) {
    mProgram.push_back({.code = code,
                        .jt = static_cast<std::uint8_t>(jumpIfTrue),
                        .jf = static_cast<std::uint8_t>(jumpIfFalse),
                        .k = value});
}

void FilterProgram::Decide(long call, std::uint32_t action) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 1);
    Add(BPF_RET | BPF_K, action);
}

void FilterProgram::Allow(long call) {
    Decide(call, SECCOMP_RET_ALLOW);
}

void FilterProgram::Refuse(long call, int error) {
    Decide(call, Failure(error));
}

void FilterProgram::Kill(long call) {
    Decide(call, SECCOMP_RET_KILL_PROCESS);
}

// Both architectures are little-endian: the low half comes first.
void FilterProgram::LoadArgument(unsigned index, bool isHighHalf) {
    const std::size_t at = offsetof(seccomp_data, args) + index * sizeof(std::uint64_t);
    Add(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(at + (isHighHalf ? sizeof(std::uint32_t) : 0)));
}

void FilterProgram::AllowIf(long call, unsigned index, std::uint32_t mask, std::uint32_t value) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 5);
    LoadArgument(index, false);
    Add(BPF_ALU | BPF_AND | BPF_K, mask);
    Add(BPF_JMP | BPF_JEQ | BPF_K, value, 0, 1);
    Add(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    Add(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
}

void FilterProgram::AllowIfNull(long call, unsigned index) {
    Add(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 6);
    LoadArgument(index, false);
    Add(BPF_JMP | BPF_JEQ | BPF_K, 0, 0, 3);
    LoadArgument(index, true);
    Add(BPF_JMP | BPF_JEQ | BPF_K, 0, 0, 1);
    Add(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    Add(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr));
}

bool FilterProgram::Install() {
    if (kArchitecture == 0) {
        return false;
    }
    Add(BPF_RET | BPF_K, Failure(EPERM));
    const sock_fprog program{.len = static_cast<unsigned short>(mProgram.size()), .filter = mProgram.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0;
}

}  // namespace lineup::decoding
