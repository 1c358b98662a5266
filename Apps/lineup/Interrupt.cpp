#include "Apps/lineup/Interrupt.h"

#include <csignal>
#include <initializer_list>

namespace cli {

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): all that a signal handler may touch
volatile std::sig_atomic_t gInterrupted = 0;

void OnSignal(int /*signal*/) {
    gInterrupted = 1;
}

}  // namespace

void WatchForInterrupts() {
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(signal, &action, nullptr);
    }
}

bool Interrupted() {
    return gInterrupted != 0;
}

}  // namespace cli
