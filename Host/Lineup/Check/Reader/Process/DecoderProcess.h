#pragma once

#include <lineup/Api.h>
#include "Host/Lineup/Check/Reader/Process/DecoderSettings.h"
#include "Host/Lineup/Check/Reader/Process/RecordingInput.h"
#include "Host/Lineup/Check/Reader/Protocol/MessageReader.h"

#include <chrono>
#include <functional>
#include <string>
#include <sys/types.h>

namespace lineup {

inline namespace parts {

/// The decoding program at work on a recording, with what it says as the input's bytes. The program ends with the
/// thread that started it, at the latest.
class LINEUP_API DecoderProcess : public ByteInput {
public:
    /// Asked several times a second while there is nothing to read; false stops with Cancelled.
    using KeepGoing = std::function<bool()>;

    /// Starts the program. Throws Error when it cannot be started, or the recording cannot be opened.
    DecoderProcess(const RecordingName& recording, DecoderSettings settings, KeepGoing keepGoing);
    /// Kills it when it still runs.
    ~DecoderProcess() override;
    DecoderProcess(const DecoderProcess&) = delete;
    DecoderProcess& operator=(const DecoderProcess&) = delete;

    /// Throws Cancelled, and Error when the program has said nothing for too long.
    std::size_t Read(std::span<std::byte> bytes) override;

    /// Ends the program and says how it came to its end, if it did so by itself and not in good order: "it crashed
    /// (SIGSEGV, Segmentation fault)". Where the caller ignores SIGCHLD, the system keeps that to itself: empty.
    [[nodiscard]] std::string End();

private:
    void WaitForBytes();
    [[nodiscard]] bool HasNothingToRead() const;

    DecoderSettings mSettings;
    KeepGoing mKeepGoing;
    RecordingInput mInput;
    Descriptor mMessages;
    pid_t mId = -1;
    Descriptor mProcess;
};

}  // namespace parts

}  // namespace lineup
