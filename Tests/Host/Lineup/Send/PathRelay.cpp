#include "Tests/Host/Lineup/Send/PathRelay.h"

#include "Tests/Host/Lineup/Send/Loopback.h"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <poll.h>
#include <span>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace test {

namespace {

constexpr int kLookAgainMs = 10;  // at what is wanted
constexpr int kNothing = -1;      // to wait for

template <class Address>
auto* Plain(Address& address) {
    return reinterpret_cast<sockaddr*>(&address);
}

bool HasCome(int socket) {
    pollfd one{.fd = socket, .events = POLLIN, .revents = 0};
    return poll(&one, 1, 0) > 0;
}

void WaitForEither(int first, int second) {
    std::array<pollfd, 2> both = {pollfd{.fd = first, .events = POLLIN, .revents = 0},
                                  pollfd{.fd = second, .events = POLLIN, .revents = 0}};
    poll(both.data(), both.size(), kLookAgainMs);
}

// -1 where nobody listens.
int ConnectTo(std::uint16_t port) {
    const int number = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = LocalAddress(port);
    if (connect(number, Plain(address), sizeof address) == 0) {
        return number;
    }
    close(number);
    return -1;
}

// What has come. False where the connection has ended.
bool PassOn(int from, int to) {
    if (!HasCome(from)) {
        return true;
    }
    std::array<char, 65536> bytes{};
    const ssize_t size = recv(from, bytes.data(), bytes.size(), 0);
    for (ssize_t done = 0; done < size;) {
        const ssize_t sent = send(to, bytes.data() + done, static_cast<std::size_t>(size - done), MSG_NOSIGNAL);
        if (sent <= 0) {
            return false;
        }
        done += sent;
    }
    return size > 0;
}

}  // namespace

PathRelay::PathRelay(Kind kind, const std::string& to, int oneOf)
    : mTo(static_cast<std::uint16_t>(std::stoi(to))),
      mOneOf(oneOf),
      mSocket(socket(AF_INET, (kind == Kind::Datagrams ? SOCK_DGRAM : SOCK_STREAM) | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = LocalAddress(0);
    socklen_t size = sizeof address;
    if (bind(mSocket, Plain(address), size) != 0 || getsockname(mSocket, Plain(address), &size) != 0 ||
        (kind == Kind::Connections && listen(mSocket, 1) != 0)) {
        throw std::runtime_error("cannot relay on 127.0.0.1");
    }
    mPort = std::to_string(ntohs(address.sin_port));
    mThread = std::jthread([this, kind](const std::stop_token& stop) {
        kind == Kind::Datagrams ? RelayDatagrams(stop) : RelayConnections(stop);
        close(mSocket);
    });
}

void PathRelay::RelayDatagrams(const std::stop_token& stop) const {
    const int out = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in sender{};
    sockaddr_in receiver = LocalAddress(mTo);
    std::vector<char> bytes(65536);
    std::vector<char> held;
    const auto forward = [&](std::span<const char> datagram) {
        sendto(out, datagram.data(), datagram.size(), 0, Plain(receiver), sizeof receiver);
    };
    for (std::int64_t count = 0; !stop.stop_requested();) {
        WaitForEither(mSocket, out);
        const Treatment now = treatment;
        if (HasCome(out)) {
            const ssize_t size = recv(out, bytes.data(), bytes.size(), 0);
            if (size >= 0 && now != Treatment::Holds && now != Treatment::LosesForGood) {
                sendto(mSocket, bytes.data(), static_cast<std::size_t>(size), 0, Plain(sender), sizeof sender);
            }
        }
        if (!HasCome(mSocket)) {
            continue;
        }
        socklen_t length = sizeof sender;
        const ssize_t size = recvfrom(mSocket, bytes.data(), bytes.size(), 0, Plain(sender), &length);
        const std::span datagram(bytes.data(), static_cast<std::size_t>(size < 0 ? 0 : size));
        const bool isOne = ++count % mOneOf == 0;
        if (isOne && now == Treatment::SwapsSome) {
            held.assign(datagram.begin(), datagram.end());
        } else if (now == Treatment::Passes || (!isOne && now != Treatment::Holds)) {
            forward(datagram);
            if (!held.empty()) {
                forward(held);
                held.clear();
            }
        }
    }
    close(out);
}

void PathRelay::RelayConnections(const std::stop_token& stop) const {
    while (!stop.stop_requested()) {
        WaitForEither(treatment == Treatment::HangsUp ? kNothing : mSocket, kNothing);
        if (treatment == Treatment::HangsUp || !HasCome(mSocket)) {
            continue;
        }
        const int caller = accept4(mSocket, nullptr, nullptr, SOCK_CLOEXEC);
        int receiver = ConnectTo(mTo);
        while (receiver < 0 && !stop.stop_requested()) {
            WaitForEither(kNothing, kNothing);
            receiver = ConnectTo(mTo);
        }
        bool goesOn = receiver >= 0;
        while (goesOn && !stop.stop_requested() && treatment != Treatment::HangsUp) {
            const bool holds = treatment == Treatment::Holds;
            WaitForEither(holds ? kNothing : caller, holds ? kNothing : receiver);
            goesOn = holds || (PassOn(caller, receiver) && PassOn(receiver, caller));
        }
        close(caller);
        close(receiver);
    }
}

}  // namespace test
