#include "Tests/Host/Lineup/Send/TransportWatch.h"
#include "Tests/Support/ChildProgram.h"

#include <fmt/format.h>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <vector>

// send_watch MINUTES: has lineup send a stream to 127.0.0.1 in real time, reads all of it, and says what it saw. It
// fails where anything was lost or wrong. Lateness fails it with --strict alone: it is the machine's as much as the
// sender's.
namespace {

constexpr std::int64_t kRate = 4'000'000;
constexpr std::int64_t kNsASecond = 1'000'000'000;

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

int Watch(double minutes, bool strict) {
    TimedReceiver receiver;
    const auto seconds = static_cast<std::int64_t>(minutes * 60);
    test::ChildProgram sender({TEST_LINEUP, "send", receiver.target, "--for", std::to_string(seconds), "--bitrate",
                               std::to_string(kRate), "--audio-codec", "s302m"},
                              std::filesystem::current_path());
    test::TransportWatch watch(kRate);
    watch.ExpectRepeats(0x100, 12);   // a group of pictures
    watch.ExpectRepeats(0x101, 125);  // a second of 1 kHz in frames of 384 samples
    std::int64_t arrivalNs = 0;
    for (;;) {
        const auto bytes = receiver.Receive(arrivalNs);
        if (bytes.empty()) {
            break;
        }
        watch.Take(bytes, arrivalNs);
    }
    sender.Send(SIGTERM);
    const test::Ending ending = sender.Wait();
    const test::WatchFigures& figures = watch.Figures();
    fmt::print("sender: {}{}", ending.out, ending.err);
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
    const bool whole = figures.units.contains(0x100) && figures.units.at(0x100) >= seconds * 25 - 1;
    fmt::print("{}\n", whole ? "all pictures came" : "pictures are missing");
    return ending.exitCode == 0 && whole && figures.errors == 0 && (!strict || figures.lateDatagrams == 0) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        if (arguments.empty() || arguments.size() > 2 || (arguments.size() == 2 && arguments[1] != "--strict")) {
            fmt::print(stderr, "send_watch MINUTES [--strict]\n");
            return 2;
        }
        return Watch(std::strtod(arguments[0].c_str(), nullptr), arguments.size() == 2);
    } catch (const std::exception& error) {
        fmt::print(stderr, "send_watch: {}\n", error.what());
        return 1;
    }
}
