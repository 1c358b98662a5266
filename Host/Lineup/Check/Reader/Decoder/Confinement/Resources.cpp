#include "Host/Lineup/Check/Reader/Decoder/Confinement/Confinement.h"

#include <cstdio>
#include <sys/resource.h>
#include <unistd.h>

namespace lineup::decoding {

namespace {

// Sound takes a few megabytes, pictures a few dozen frames. Libraries that are mapped count too, and are there before
// the limit.
constexpr rlim_t kMemoryBytes = rlim_t{1} << 30;

// At a hundred times real time these are four days of sound, and a year of a stream.
constexpr rlim_t kFileSeconds = 3600;
constexpr rlim_t kStreamSeconds = rlim_t{30} * 86400;

// Standard streams, the pipe, and for a URL its sockets and what the system says of names and certificates.
constexpr rlim_t kFileDescriptors = 4;
constexpr rlim_t kUrlDescriptors = 64;

// Whether the limit is in force. An emulator of another processor takes that of memory and lets it be.
bool Limit(int resource, rlim_t value) {
    const auto which = static_cast<__rlimit_resource_t>(resource);
    rlimit limit{.rlim_cur = value, .rlim_max = value};
    return setrlimit(which, &limit) == 0 && getrlimit(which, &limit) == 0 && limit.rlim_cur == value;
}

// Bytes of address space in use, 0 when that cannot be told.
rlim_t MappedBytes() {
    FILE* const file = std::fopen("/proc/self/statm", "re");
    if (file == nullptr) {
        return 0;
    }
    unsigned long pages = 0;
    const bool isKnown = std::fscanf(file, "%lu", &pages) == 1;  // NOLINT(cert-err34-c): written by the kernel
    static_cast<void>(std::fclose(file));
    return isKnown ? pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) : 0;
}

bool LimitMemory() {
    const rlim_t mapped = MappedBytes();
    return mapped > 0 && Limit(RLIMIT_AS, mapped + kMemoryBytes);
}

}  // namespace

bool LimitResources(InputKind kind) {
    const bool isMemoryLimited = LimitMemory();  // first: it opens a file
    Limit(RLIMIT_CORE, 0);
    Limit(RLIMIT_FSIZE, 0);
    Limit(RLIMIT_MSGQUEUE, 0);
    Limit(RLIMIT_MEMLOCK, 0);
    Limit(RLIMIT_CPU, kind == InputKind::File ? kFileSeconds : kStreamSeconds);
    Limit(RLIMIT_NOFILE, kind == InputKind::Url ? kUrlDescriptors : kFileDescriptors + 1);
    return isMemoryLimited;
}

}  // namespace lineup::decoding
