#include "Tests/Host/Lineup/Send/OtherReceivers.h"

#include "Tests/Host/Lineup/Send/Loopback.h"

#include <arpa/inet.h>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <netinet/in.h>
#include <sched.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace test {

namespace {

constexpr std::size_t kPicturesACycle = 12;
constexpr std::size_t kFramesACycle = 125;
constexpr std::uint32_t kEveryAddress = INADDR_ANY;
constexpr const char* kHeldBytes = "4194304";  // of a receiver that has to wait for a processor

std::vector<std::string> Command(OtherReceiver::Program program, const std::string& port,
                                 const std::filesystem::path& file) {
    if (program == OtherReceiver::Program::Ffmpeg) {
        const std::string url =
            "udp://127.0.0.1:" + port + "?fifo_size=100000&timeout=10000000&buffer_size=" + kHeldBytes;
        return {FFMPEG_PROGRAM, "-v",   "warning", "-nostdin",  "-i", url,        "-map", "0",
                "-c:v",         "copy", "-c:a",    "pcm_s24le", "-f", "framecrc", "-y",   file.string()};
    }
    // Without times of arrival, by which stamps would be moved a little.
    return {GST_LAUNCH_PROGRAM,
            "-q",
            "udpsrc",
            "address=127.0.0.1",
            "port=" + port,
            std::string("buffer-size=") + kHeldBytes,
            "do-timestamp=false",
            "caps=video/mpegts,systemstream=(boolean)true,packetsize=188",
            "!",
            "tsdemux",
            "name=streams",
            "streams.",
            "!",
            "video/x-h264",
            "!",
            "queue",
            "!",
            "checksumsink",
            "hash=md5",
            "sync=false",
            "streams.",
            "!",
            "audio/x-smpte-302m",
            "!",
            "queue",
            "!",
            "checksumsink",
            "hash=sha1",
            "sync=false"};
}

// GStreamer's notes are what it prints. Who receives goes behind the sender, where that has the processor first.
bool Prepare(OtherReceiver::Program program, const std::filesystem::path& file) {
    const int policy = sched_getscheduler(0);
    if (policy == SCHED_FIFO || policy == SCHED_RR) {
        const sched_param last{.sched_priority = sched_get_priority_min(policy)};
        sched_setscheduler(0, policy, &last);
    }
    if (program == OtherReceiver::Program::Ffmpeg) {
        return true;
    }
    const int notes = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    return notes >= 0 && dup2(notes, STDOUT_FILENO) >= 0;
}

UnitLog EmptyLog(OtherReceiver::Program program) {
    // FFmpeg's stamps are those of the stream; GStreamer's are ns, of which 90 kHz leave up to 11 µs.
    const std::int64_t unevenness = program == OtherReceiver::Program::Ffmpeg ? 1 : 12'000;
    return {{.repeats = kPicturesACycle, .unevenness = unevenness, .last = {}},
            {.repeats = kFramesACycle, .unevenness = unevenness, .last = {}}};
}

}  // namespace

OtherReceiver::OtherReceiver(Program program, const std::filesystem::path& folder)
    : mProgram(program),
      mPort(FreePort()),
      mFile(folder / (program == Program::Ffmpeg ? "ffmpeg" : "gstreamer")),
      mSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)),
      mChild(Command(program, mPort, mFile), folder, [this] { return Prepare(mProgram, mFile); }) {}

OtherReceiver::~OtherReceiver() {
    close(mSocket);
}

bool OtherReceiver::IsReady() const {
    if (!mChild.IsRunning()) {
        throw std::runtime_error(mFile.filename().string() + " does not receive");
    }
    return SomebodyHas(mPort, "/proc/net/udp") || SomebodyHas(mPort, "/proc/net/udp", kEveryAddress);
}

void OtherReceiver::PassOn(std::span<const std::uint8_t> datagram) const {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(mPort)));
    sendto(mSocket, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
}

UnitLog OtherReceiver::Finish(std::string& complaints) {
    if (mProgram == Program::Gstreamer) {  // FFmpeg ends by itself when nothing has come for ten seconds
        mChild.Send(SIGTERM);
    }
    complaints = mChild.Wait().err;
    UnitLog log = EmptyLog(mProgram);
    std::ifstream notes(mFile);
    if (mProgram == Program::Ffmpeg) {
        log.ReadFrameCrc(notes);
    } else {
        log.ReadChecksums(notes);
    }
    return log;
}

}  // namespace test
