#include "Host/Lineup/Files/UnfinishedFiles.h"

#include <climits>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace lineup {
inline namespace parts {

namespace {

constexpr mode_t kReadWriteForAll = 0666;  // less what the process's umask takes away

// How long a signal handler waits for another thread to finish opening a file. Opening one takes
// microseconds; a dead network drive must not keep the process from ending.
constexpr int kMostWaits = 1000;
constexpr int kWaitMilliseconds = 1;

enum class State : int { Free, Opening, Listed, Removed };

// Never freed and never moved: a signal handler reads it at any moment. What was removed by a handler
// stays so, for the process ends.
struct Slot {
    std::atomic<State> state{State::Free};
    std::array<char, PATH_MAX> path{};
};
static_assert(std::atomic<State>::is_always_lock_free);

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): all that a signal handler can reach
std::array<Slot, 16> gSlots;
std::atomic<bool> gEnding{false};
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

/// Keeps signals away from this thread, so that a handler that waits for it never runs on top of it.
class SignalsBlocked {
public:
    SignalsBlocked() noexcept {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &mBefore);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t mBefore{};
};

/// The number of a slot that was free, or the number of slots.
std::size_t TakeSlot() noexcept {
    std::size_t i = 0;
    for (; i < gSlots.size(); ++i) {
        State expected = State::Free;
        if (gSlots[i].state.compare_exchange_strong(expected, State::Opening)) {
            break;
        }
    }
    return i;
}

int Create(const std::string& path) noexcept {
    return open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kReadWriteForAll);
}

}  // namespace

void RemoveUnfinishedFiles() noexcept {
    gEnding = true;
    int waits = 0;
    for (Slot& slot : gSlots) {
        while (slot.state == State::Opening && ++waits < kMostWaits) {
            poll(nullptr, 0, kWaitMilliseconds);
        }
        State expected = State::Listed;
        if (slot.state.compare_exchange_strong(expected, State::Removed)) {
            unlink(slot.path.data());
        }
    }
}

int UnfinishedFile::Open(const std::string& path) noexcept {
    const SignalsBlocked blocked;
    const std::size_t number = path.size() < PATH_MAX ? TakeSlot() : gSlots.size();
    if (number == gSlots.size()) {
        return Create(path);
    }
    Slot& slot = gSlots[number];
    // Looked at after the slot was taken: a handler that is at work already waits for it.
    if (gEnding) {
        slot.state = State::Free;
        errno = EINTR;
        return -1;
    }
    const int descriptor = Create(path);
    if (descriptor < 0) {
        slot.state = State::Free;
        return -1;
    }
    *std::ranges::copy(path, slot.path.begin()).out = '\0';
    slot.state = State::Listed;
    mSlot = number;
    return descriptor;
}

void UnfinishedFile::Forget() noexcept {
    if (mSlot != kUnlisted) {
        State expected = State::Listed;
        gSlots[mSlot].state.compare_exchange_strong(expected, State::Free);
        mSlot = kUnlisted;
    }
}

}  // namespace parts
}  // namespace lineup
