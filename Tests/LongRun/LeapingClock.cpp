// Loaded before a program (LD_PRELOAD), sets the system's clock for it, and for it alone: every ten seconds it leaps by
// an hour, a day or the whole time since 1970, forward and back, and whoever sleeps until a time of it is woken as if
// it had been set. The monotonic clock goes on.
#include <algorithm>
#include <array>
#include <cstdint>
#include <ctime>
#include <dlfcn.h>
#include <sys/time.h>

namespace {

constexpr std::int64_t kSecondNs = 1'000'000'000;
constexpr std::int64_t kEveryNs = 10 * kSecondNs;
constexpr std::array<std::int64_t, 6> kLeapsSeconds = {0, 3600, -3600, 86400, 0, -1'700'000'000};

// The next one of this name: that of the system.
template <class Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

std::int64_t Now(clockid_t clock) {
    static const auto kRead = Next<int (*)(clockid_t, timespec*)>("clock_gettime");
    timespec now{};
    kRead(clock, &now);
    return now.tv_sec * kSecondNs + now.tv_nsec;
}

timespec SpecOf(std::int64_t ns) {
    return {.tv_sec = ns / kSecondNs, .tv_nsec = ns % kSecondNs};
}

std::int64_t SinceStart() {
    static const std::int64_t kStart = Now(CLOCK_MONOTONIC);
    return Now(CLOCK_MONOTONIC) - kStart;
}

std::int64_t LeapNs() {
    return kLeapsSeconds[static_cast<std::size_t>(SinceStart() / kEveryNs) % kLeapsSeconds.size()] * kSecondNs;
}

std::int64_t SetNow() {
    return Now(CLOCK_REALTIME) + LeapNs();
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) int clock_gettime(clockid_t clock, timespec* now) noexcept {
    *now = SpecOf(clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE ? SetNow() : Now(clock));
    return 0;
}

__attribute__((visibility("default"))) int gettimeofday(timeval* now, void*) noexcept {
    const std::int64_t ns = SetNow();
    *now = {.tv_sec = ns / kSecondNs, .tv_usec = ns % kSecondNs / 1000};
    return 0;
}

__attribute__((visibility("default"))) std::time_t time(std::time_t* out) noexcept {
    const std::time_t now = SetNow() / kSecondNs;
    if (out != nullptr) {
        *out = now;
    }
    return now;
}

__attribute__((visibility("default"))) int clock_nanosleep(clockid_t clock, int flags, const timespec* until,
                                                           timespec* left) {
    static const auto kSleep = Next<int (*)(clockid_t, int, const timespec*, timespec*)>("clock_nanosleep");
    if (clock != CLOCK_REALTIME || (flags & TIMER_ABSTIME) == 0) {
        return kSleep(clock, flags, until, left);
    }
    const std::int64_t untilNs = until->tv_sec * kSecondNs + until->tv_nsec;
    int result = 0;
    while (result == 0 && SetNow() < untilNs) {
        const timespec wait = SpecOf(std::min(untilNs - SetNow(), kEveryNs - SinceStart() % kEveryNs));
        result = kSleep(CLOCK_MONOTONIC, 0, &wait, left);
    }
    return result;
}
}
