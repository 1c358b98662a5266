#include "Host/Lineup/Send/Clocks.h"

#include <algorithm>
#include <ctime>

namespace lineup {

SendClock::~SendClock() = default;

inline namespace parts {

namespace {

constexpr std::int64_t kNsASecond = 1'000'000'000;
constexpr std::int64_t kLookAgainNs = kNsASecond / 10;

class SystemClock final : public SendClock {
public:
    explicit SystemClock(clockid_t clock) : mClock(clock) {}

    [[nodiscard]] std::int64_t NowNs() override {
        timespec now{};
        clock_gettime(mClock, &now);
        return now.tv_sec * kNsASecond + now.tv_nsec;
    }

    // Who sleeps until a time of a clock that is then set back by an hour sleeps that hour too: so for a while at most,
    // and by the clock that nobody sets.
    void WaitUntilNs(std::int64_t ns) override {
        const bool canBeSet = mClock != CLOCK_MONOTONIC;
        const std::int64_t time = canBeSet ? std::clamp<std::int64_t>(ns - NowNs(), 0, kLookAgainNs) : ns;
        const timespec spec{.tv_sec = time / kNsASecond, .tv_nsec = time % kNsASecond};
        clock_nanosleep(CLOCK_MONOTONIC, canBeSet ? 0 : TIMER_ABSTIME, &spec, nullptr);
    }

private:
    clockid_t mClock;
};

class FreeClock final : public SendClock {
public:
    [[nodiscard]] std::int64_t NowNs() override { return mNow; }
    void WaitUntilNs(std::int64_t ns) override { mNow = std::max(mNow, ns); }

private:
    std::int64_t mNow = 0;
};

}  // namespace

std::unique_ptr<SendClock> MakeClock(SendTiming timing) {
    if (timing == SendTiming::Free) {
        return std::make_unique<FreeClock>();
    }
    return std::make_unique<SystemClock>(timing == SendTiming::Wall ? CLOCK_REALTIME : CLOCK_MONOTONIC);
}

}  // namespace parts
}  // namespace lineup
