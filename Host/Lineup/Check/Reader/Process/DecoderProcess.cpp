#include "Host/Lineup/Check/Reader/Process/DecoderProcess.h"

#include <lineup/Exporter.h>
#include "Host/Lineup/Check/Reader/Process/SpawnDecoder.h"
#include "Host/Lineup/Plugin/DynamicLibrary.h"

#include <fmt/format.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace lineup {

inline namespace parts {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kAskEveryMilliseconds = 100;

std::string Describe(int status) {
    if (!WIFSIGNALED(status)) {
        return WEXITSTATUS(status) == 0 ? "" : fmt::format("it ended with exit code {}", WEXITSTATUS(status));
    }
    switch (const int signal = WTERMSIG(status); signal) {
        case SIGSYS:
            return "it tried to do what it has no right to (SIGSYS)";
        case SIGXCPU:
            return "it took more of the processor's time than it may (SIGXCPU)";
        default:
            return fmt::format("it crashed (SIG{}, {})", sigabbrev_np(signal), sigdescr_np(signal));
    }
}

}  // namespace

DecoderSettings::DecoderSettings() : program(DynamicLibrary::Beside(kProgramName)) {}

DecoderProcess::DecoderProcess(const RecordingName& recording, DecoderSettings settings, KeepGoing keepGoing)
    : mSettings(std::move(settings)), mKeepGoing(std::move(keepGoing)), mInput(OpenRecording(recording)) {
    SpawnedDecoder decoder = SpawnDecoder(recording, mInput, mSettings);
    mMessages = std::move(decoder.messages);
    mId = decoder.id;
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
    kill(mId, SIGKILL);  // one that is about to end keeps its own way of ending
    int status = 0;
    pid_t ended = -1;
    while ((ended = waitpid(mId, &status, 0)) < 0 && errno == EINTR) {
    }
    mId = -1;
    const bool isOurDoing = ended < 0 || (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    return isOurDoing ? "" : Describe(status);
}

}  // namespace parts

}  // namespace lineup
