#pragma once

#include "Tests/Host/Lineup/Send/UnitLog.h"
#include "Tests/Support/ChildProgram.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace test {

/// Another program that receives a transport stream by UDP and notes each picture and each frame of sound.
class OtherReceiver {
public:
    enum class Program : std::uint8_t { Ffmpeg, Gstreamer };

    /// Starts it; what it notes goes into `folder`. What is passed on before it is ready is lost.
    OtherReceiver(Program program, const std::filesystem::path& folder);
    ~OtherReceiver();
    OtherReceiver(const OtherReceiver&) = delete;
    OtherReceiver& operator=(const OtherReceiver&) = delete;

    /// Whether it listens already. Throws std::runtime_error when it has ended.
    [[nodiscard]] bool IsReady() const;

    void PassOn(std::span<const std::uint8_t> datagram) const;

    /// Ends it, and says what it saw; `complaints` is what it said itself.
    UnitLog Finish(std::string& complaints);

private:
    Program mProgram;
    std::string mPort;
    std::filesystem::path mFile;
    int mSocket;
    ChildProgram mChild;
};

}  // namespace test
