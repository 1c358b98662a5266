#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"
#include "Host/Lineup/Check/Reader/Decoder/Confinement/FilterProgram.h"

#include <cerrno>
#include <fcntl.h>
#include <linux/sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace lineup::decoding {

namespace {

// Memory, time, threads and what is open already.
constexpr long kForDecoding[] = {
    SYS_read,
    SYS_readv,
    SYS_pread64,
    SYS_write,
    SYS_writev,
    SYS_lseek,
    SYS_close,
    SYS_fstat,
    SYS_brk,
    SYS_munmap,
    SYS_mremap,
    SYS_madvise,
    SYS_futex,
    SYS_set_robust_list,
    SYS_rseq,
    SYS_sched_yield,
    SYS_sched_getaffinity,
    SYS_membarrier,
    SYS_clock_gettime,
    SYS_clock_getres,
    SYS_clock_nanosleep,
    SYS_nanosleep,
    SYS_gettimeofday,
    SYS_restart_syscall,
    SYS_rt_sigaction,
    SYS_rt_sigprocmask,
    SYS_rt_sigreturn,
    SYS_sigaltstack,
    SYS_exit,
    SYS_exit_group,
    SYS_getpid,
    SYS_gettid,
    SYS_getppid,
    SYS_getuid,
    SYS_geteuid,
    SYS_getgid,
    SYS_getegid,
    SYS_getrandom,
    SYS_getrusage,
    SYS_sysinfo,
    SYS_uname,
    SYS_ppoll,
    SYS_pselect6,
#if defined(__x86_64__)
    SYS_poll,
    SYS_select,
    SYS_time,
    SYS_arch_prctl,
#endif
};

// What reading from the network takes beside them.
constexpr long kForNetwork[] = {
    SYS_socket,        SYS_connect,    SYS_bind,        SYS_listen,     SYS_accept4,     SYS_accept,
    SYS_shutdown,      SYS_socketpair, SYS_sendto,      SYS_sendmsg,    SYS_sendmmsg,    SYS_recvfrom,
    SYS_recvmsg,       SYS_recvmmsg,   SYS_setsockopt,  SYS_getsockopt, SYS_getsockname, SYS_getpeername,
    SYS_epoll_create1, SYS_epoll_ctl,  SYS_epoll_pwait, SYS_eventfd2,   SYS_pipe2,       SYS_dup,
    SYS_newfstatat,    SYS_statx,      SYS_statfs,      SYS_fstatfs,    SYS_getdents64,  SYS_readlinkat,
    SYS_faccessat,     SYS_ioctl,
#if defined(__x86_64__)
    SYS_epoll_create,  SYS_epoll_wait, SYS_stat,        SYS_lstat,      SYS_access,      SYS_readlink,
#endif
};

// What nobody asks for who decodes a recording: somebody else has taken over.
constexpr long kNever[] = {
    SYS_execve, SYS_execveat,    SYS_ptrace,     SYS_process_vm_readv,  SYS_process_vm_writev,
    SYS_kill,   SYS_tkill,       SYS_pidfd_open, SYS_pidfd_send_signal, SYS_io_uring_setup,
    SYS_bpf,    SYS_userfaultfd, SYS_mount,      SYS_unshare,           SYS_setns,
#if defined(__x86_64__)
    SYS_fork,   SYS_vfork,
#endif
};

// Newer calls that the C library does without where the kernel has none.
constexpr long kUnknown[] = {SYS_clone3, SYS_openat2, SYS_faccessat2};

constexpr std::uint32_t kWholeWord = 0xffffffff;

// Everything that will ever be executed is there already; names of hosts are looked up by libraries that are not.
void AllowMapping(FilterProgram& filter, InputKind kind) {
    for (const long call : {SYS_mmap, SYS_mprotect}) {
        if (kind == InputKind::Url) {
            filter.Allow(call);
        } else {
            filter.AllowIf(call, 2, PROT_EXEC, 0);
        }
    }
}

// open() for reading alone, where Landlock says of what.
void AllowOpening(FilterProgram& filter) {
    constexpr auto kChanges = static_cast<std::uint32_t>(O_ACCMODE | O_CREAT | O_TRUNC);
    filter.AllowIf(SYS_openat, 2, kChanges, O_RDONLY);
#if defined(__x86_64__)
    filter.AllowIf(SYS_open, 1, kChanges, O_RDONLY);
#endif
}

void AllowConditionally(FilterProgram& filter) {
    filter.AllowIf(SYS_clone, 0, CLONE_THREAD, CLONE_THREAD);
    filter.AllowIf(SYS_tgkill, 0, kWholeWord, static_cast<std::uint32_t>(getpid()));  // abort()
    filter.AllowIf(SYS_prctl, 0, kWholeWord, PR_SET_NAME);
    filter.AllowIfNull(SYS_prlimit64, 2);  // asks, and sets nothing
    for (const int command : {F_GETFD, F_SETFD, F_GETFL, F_SETFL}) {
        filter.AllowIf(SYS_fcntl, 1, kWholeWord, static_cast<std::uint32_t>(command));
    }
}

}  // namespace

bool GiveUpSystemCalls(InputKind kind) {
    FilterProgram filter;
    for (const long call : kForDecoding) {
        filter.Allow(call);
    }
    AllowMapping(filter, kind);
    AllowConditionally(filter);
    if (kind == InputKind::Url) {
        for (const long call : kForNetwork) {
            filter.Allow(call);
        }
        AllowOpening(filter);
    } else {
        filter.Kill(SYS_socket);
        filter.Allow(SYS_newfstatat);
    }
    for (const long call : kUnknown) {
        filter.Refuse(call, ENOSYS);
    }
    filter.Kill(SYS_clone);
    for (const long call : kNever) {
        filter.Kill(call);
    }
    return filter.Install();
}

}  // namespace lineup::decoding
