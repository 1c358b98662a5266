#include "Apps/lineup/Terminal/Interrupt.h"

#include "Host/Lineup/Files/UnfinishedFiles.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <initializer_list>
#include <unistd.h>

namespace cli {

namespace {

constexpr std::array kRequestsToStop = {SIGINT, SIGTERM, SIGHUP};

// What ends a program unless it says otherwise, but for SIGKILL, which nothing can be done about.
constexpr std::array kEndings = {SIGINT,  SIGTERM, SIGHUP,  SIGQUIT, SIGABRT,   SIGSEGV,  SIGBUS,
                                 SIGFPE,  SIGILL,  SIGSYS,  SIGTRAP, SIGALRM,   SIGPROF,  SIGPOLL,
                                 SIGXCPU, SIGUSR1, SIGUSR2, SIGPWR,  SIGSTKFLT, SIGVTALRM};

constexpr int kShellsBase = 128;  // a shell's exit status for a signal is this and its number

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): all that a signal handler may touch
volatile std::sig_atomic_t gWatching = 0;
volatile std::sig_atomic_t gInterrupted = 0;
volatile std::sig_atomic_t gSecondsToStop = 0;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

void OnSignal(int signal) {
    if (gWatching != 0 && gInterrupted == 0 && std::ranges::find(kRequestsToStop, signal) != kRequestsToStop.end()) {
        gInterrupted = signal;
        alarm(static_cast<unsigned>(gSecondsToStop));
        return;
    }
    if (signal == SIGALRM && gInterrupted != 0) {
        signal = gInterrupted;
    }
    lineup::RemoveUnfinishedFiles();
    std::signal(signal, SIG_DFL);
    std::raise(signal);  // waits until this handler returns
}

bool IsDefault(int signal) {
    struct sigaction before {};
    return sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL;
}

}  // namespace

void PrepareForSignals() {
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : kEndings) {
        if (IsDefault(signal)) {
            sigaction(signal, &action, nullptr);
        }
    }
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        std::signal(signal, SIG_IGN);
    }
}

void WatchForInterrupts(int secondsToStop) {
    gSecondsToStop = secondsToStop;
    gWatching = 1;
}

int Interrupted() {
    return gInterrupted;
}

void EndBy(int signal) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    _exit(kShellsBase + signal);  // where the signal was blocked
}

}  // namespace cli
