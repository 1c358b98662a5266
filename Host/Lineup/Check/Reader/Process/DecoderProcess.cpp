#include "Host/Lineup/Check/Reader/Process/DecoderProcess.h"

#include <lineup/Exporter.h>
#include "Host/Lineup/Check/Reader/Process/SpawnDecoder.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <fmt/format.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace lineup {

inline namespace parts {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kAskEveryMilliseconds = 100;

std::string Describe(const siginfo_t& ended) {
    const int status = ended.si_status;
    if (ended.si_code == CLD_EXITED) {
        return status == 0 ? "" : fmt::format("it ended with exit code {}", status);
    }
    switch (status) {
        case SIGSYS:
            return "it tried to do what it has no right to (SIGSYS)";
        case SIGXCPU:
            return "it took more of the processor's time than it may (SIGXCPU)";
        default:
            return fmt::format("it crashed (SIG{}, {})", sigabbrev_np(status), sigdescr_np(status));
    }
}

// One that is about to end keeps its own way of ending. Where the caller ignores SIGCHLD, an id may have gone to
// another process by now; a descriptor has not.
void Kill(pid_t id, int process) {
    if (process >= 0) {
        syscall(SYS_pidfd_send_signal, process, SIGKILL, nullptr, 0);
    } else {
        kill(id, SIGKILL);
    }
}

// How the process ended; empty where the system does not tell.
std::optional<siginfo_t> WaitFor(pid_t id, int process) {
    siginfo_t ended{};
    int result = -1;
    do {
        result = process >= 0 ? waitid(P_PIDFD, static_cast<id_t>(process), &ended, WEXITED)
                              : waitid(P_PID, static_cast<id_t>(id), &ended, WEXITED);
    } while (result < 0 && errno == EINTR);
    return result == 0 ? std::optional(ended) : std::nullopt;
}

}  // namespace

DecoderSettings::DecoderSettings() : program(DynamicLibrary::Beside(kProgramName)) {}

DecoderProcess::DecoderProcess(const RecordingName& recording, DecoderSettings settings, KeepGoing keepGoing)
    : mSettings(std::move(settings)), mKeepGoing(std::move(keepGoing)), mInput(OpenRecording(recording)) {
    SpawnedDecoder decoder = SpawnDecoder(recording, mInput, mSettings);
    mMessages = std::move(decoder.messages);
    mId = decoder.id;
    mProcess = std::move(decoder.process);
}

DecoderProcess::~DecoderProcess() {
    static_cast<void>(End());
}

// A pipe that nobody has written into: whoever reads it may wait.
bool DecoderProcess::HasNothingToRead() const {
    pollfd input{.fd = mInput.descriptor.Number(), .events = POLLIN, .revents = 0};
    return mInput.descriptor.Number() >= 0 && !mInput.canSeek && poll(&input, 1, 0) == 0;
}

void DecoderProcess::WaitForBytes() {
    Clock::time_point deadline = Clock::now() + mSettings.silence;
    pollfd messages{.fd = mMessages.Number(), .events = POLLIN, .revents = 0};
    while (poll(&messages, 1, kAskEveryMilliseconds) <= 0) {
        if (mKeepGoing && !mKeepGoing()) {
            throw Cancelled("cancelled");
        }
        if (HasNothingToRead()) {
            deadline = Clock::now() + mSettings.silence;
        } else if (Clock::now() >= deadline) {
            throw Error(fmt::format("the decoder has said nothing for {} s",
                                    std::chrono::duration<double>(mSettings.silence).count()));
        }
    }
}

std::size_t DecoderProcess::Read(std::span<std::byte> bytes) {
    while (true) {
        WaitForBytes();
        const ssize_t count = read(mMessages.Number(), bytes.data(), bytes.size());
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR && errno != EAGAIN) {
            throw Error(fmt::format("cannot read what the decoder says: {}", std::generic_category().message(errno)));
        }
    }
}

std::string DecoderProcess::End() {
    if (mId < 0) {
        return {};
    }
    mMessages.Close();
    const pid_t id = std::exchange(mId, -1);
    Kill(id, mProcess.Number());
    const std::optional<siginfo_t> ended = WaitFor(id, mProcess.Number());
    const bool isOurDoing = !ended || (ended->si_code == CLD_KILLED && ended->si_status == SIGKILL);
    return isOurDoing ? "" : Describe(*ended);
}

}  // namespace parts

}  // namespace lineup
