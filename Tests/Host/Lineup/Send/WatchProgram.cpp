#include "Tests/Host/Lineup/Send/OtherReceivers.h"
#include "Tests/Host/Lineup/Send/Sleeper.h"
#include "Tests/Host/Lineup/Send/TransportWatch.h"
#include "Tests/Support/ChildProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <fmt/format.h>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <memory>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <vector>

// send_watch MINUTES [--others] [--strict]: has lineup send a stream to 127.0.0.1 in real time, reads all of it, and
// says what it saw; with --others, what FFmpeg and GStreamer saw of it too. It fails where anything was lost or wrong.
// Lateness fails it with --strict alone: it is the machine's as much as the sender's.
namespace {

constexpr std::int64_t kRate = 4'000'000;
constexpr std::int64_t kNsASecond = 1'000'000'000;
constexpr std::int64_t kPicturesASecond = 25;
constexpr std::int64_t kFramesASecond = 125;

/// Receives with the time at which the system took each datagram, so that this program's own delays do not count.
class TimedReceiver {
public:
    TimedReceiver() : mSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        const int on = 1;
        const int buffer = 8 << 20;
        const timeval patience{.tv_sec = 3, .tv_usec = 0};
        setsockopt(mSocket, SOL_SOCKET, SO_RCVBUF, &buffer, sizeof(buffer));
        if (bind(mSocket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            getsockname(mSocket, reinterpret_cast<sockaddr*>(&address), &size) != 0 ||
            setsockopt(mSocket, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof(on)) != 0 ||
            setsockopt(mSocket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience)) != 0) {
            throw std::runtime_error("cannot receive on 127.0.0.1");
        }
        target = fmt::format("udp://127.0.0.1:{}", ntohs(address.sin_port));
    }

    // Empty when nothing has come for a while.
    std::span<const std::uint8_t> Receive(std::int64_t& arrivalNs) {
        std::array<char, CMSG_SPACE(sizeof(timespec))> control{};
        iovec place{.iov_base = mBytes.data(), .iov_len = mBytes.size()};
        msghdr message{};
        message.msg_iov = &place;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t size = recvmsg(mSocket, &message, 0);
        const cmsghdr* const head = size > 0 ? CMSG_FIRSTHDR(&message) : nullptr;
        if (head != nullptr) {
            timespec when{};
            std::copy_n(CMSG_DATA(head), sizeof(when), reinterpret_cast<unsigned char*>(&when));
            arrivalNs = when.tv_sec * kNsASecond + when.tv_nsec;
        }
        return std::span(mBytes).first(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }

    std::string target;

private:
    int mSocket;
    std::array<std::uint8_t, 2048> mBytes{};
};

using Others = std::vector<std::unique_ptr<test::OtherReceiver>>;

Others StartOthers(const std::filesystem::path& folder) {
    Others others;
    for (const auto program : {test::OtherReceiver::Program::Gstreamer, test::OtherReceiver::Program::Ffmpeg}) {
        others.push_back(std::make_unique<test::OtherReceiver>(program, folder));
        while (!others.back()->IsReady()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    return others;
}

// Whether nothing was wrong or missing but the last, of which no other says that it has ended.
bool FinishOther(test::OtherReceiver& other, const char* name, std::int64_t seconds) {
    std::string complaints;
    const test::UnitLog log = other.Finish(complaints);
    fmt::print("{}: {} pictures, {} sound frames, {} errors of time stamps and content\n{}", name, log.Pictures(),
               log.SoundFrames(), log.errors, complaints);
    for (const std::string& error : log.firstErrors) {
        fmt::print("  {}\n", error);
    }
    return log.errors == 0 && log.Pictures() >= seconds * kPicturesASecond - 1 &&
           log.SoundFrames() >= seconds * kFramesASecond - 1;
}

void Print(const test::WatchFigures& figures) {
    fmt::print("received: {} datagrams, {} pictures, {} sound frames, {} clocks\n", figures.datagrams,
               figures.units.contains(0x100) ? figures.units.at(0x100) : 0,
               figures.units.contains(0x101) ? figures.units.at(0x101) : 0, figures.clocks);
    fmt::print("errors of syntax, counters, checksums, clock, time stamps, content: {}\n", figures.errors);
    for (const std::string& error : figures.firstErrors) {
        fmt::print("  {}\n", error);
    }
    fmt::print("clock: {:.0f} ns off its line at worst\n", figures.worstClockNs);
    fmt::print("arrival: {} datagrams more than {} ms late, the worst {:.2f} ms\n", figures.lateDatagrams,
               test::TransportWatch::kLateArrivalMs, figures.worstLateMs);
}

struct Options {
    double minutes = 0;
    bool strict = false;
    bool others = false;
};

int Watch(const Options& options) {
    TimedReceiver receiver;
    const test::TemporaryFolder folder;
    const Others others = options.others ? StartOthers(folder.Path()) : Others();
    const auto seconds = static_cast<std::int64_t>(options.minutes * 60);
    test::ChildProgram sender({TEST_LINEUP, "send", receiver.target, "--for", std::to_string(seconds), "--bitrate",
                               std::to_string(kRate), "--audio-codec", "s302m", "--frequency", "997"},
                              std::filesystem::current_path());
    constexpr std::int64_t kBitsOfDatagram = 7 * 188 * 8;
    const test::Sleeper sleeper(std::chrono::nanoseconds(kBitsOfDatagram * kNsASecond / kRate));
    test::TransportWatch watch(kRate);
    watch.ExpectRepeats(0x100, 12);              // a group of pictures
    watch.ExpectRepeats(0x101, kFramesASecond);  // of a tone that has no shorter cycle than a second
    std::int64_t arrivalNs = 0;
    for (;;) {
        const auto bytes = receiver.Receive(arrivalNs);
        if (bytes.empty()) {
            break;
        }
        for (const auto& other : others) {
            other->PassOn(bytes);
        }
        watch.Take(bytes, arrivalNs);
    }
    sender.Send(SIGTERM);
    const test::Ending ending = sender.Wait();
    const test::WatchFigures& figures = watch.Figures();
    fmt::print("sender: {}{}", ending.out, ending.err);
    Print(figures);
    fmt::print("this machine: who only sleeps was woken more than 2 ms late {} times, the worst {:.2f} ms\n",
               sleeper.late.load(), static_cast<double>(sleeper.worstNs) / 1e6);
    const bool whole = figures.units.contains(0x100) && figures.units.at(0x100) >= seconds * kPicturesASecond - 1;
    fmt::print("{}\n", whole ? "all pictures came" : "pictures are missing");
    bool othersAgree = true;
    for (std::size_t i = 0; i < others.size(); ++i) {
        othersAgree = FinishOther(*others[i], i == 0 ? "GStreamer" : "FFmpeg", seconds) && othersAgree;
    }
    return ending.exitCode == 0 && whole && othersAgree && figures.errors == 0 &&
                   (!options.strict || figures.lateDatagrams == 0)
               ? 0
               : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        Options options;
        bool isClear = argc > 1;
        for (const std::string& word : std::vector<std::string>(argv + 1, argv + argc)) {
            if (word == "--strict") {
                options.strict = true;
            } else if (word == "--others") {
                options.others = true;
            } else {
                options.minutes = std::strtod(word.c_str(), nullptr);
                isClear = isClear && options.minutes > 0;
            }
        }
        if (!isClear || options.minutes <= 0) {
            fmt::print(stderr, "send_watch MINUTES [--others] [--strict]\n");
            return 2;
        }
        return Watch(options);
    } catch (const std::exception& error) {
        fmt::print(stderr, "send_watch: {}\n", error.what());
        return 1;
    }
}
