#include "Tests/Host/Lineup/Check/Watch/UdpRelay.h"

#include "Tests/Host/Lineup/Send/Loopback.h"

#include <netinet/in.h>
#include <string_view>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace test {

UdpRelay::UdpRelay(std::string stream, RelayDamage damage)
    : mStream(std::move(stream)),
      mDamage(std::move(damage)),
      mPort(static_cast<std::uint16_t>(std::stoi(FreePort()))),
      mThread([this](const std::stop_token& stop) { Run(stop); }) {}

std::string UdpRelay::Address() const {
    return "127.0.0.1:" + std::to_string(mPort);
}

// False where it is told to stop.
bool UdpRelay::SendOne(int socket, std::size_t number, const std::stop_token& stop) const {
    while (BytesWaiting(mPort).value_or(kMostWaiting + 1) > kMostWaiting) {
        if (stop.stop_requested()) {
            return false;
        }
        std::this_thread::yield();
    }
    const std::string_view bytes = std::string_view(mStream).substr(number * kDatagram, kDatagram);
    const sockaddr_in address = LocalAddress(mPort);
    sendto(socket, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    return true;
}

void UdpRelay::Run(const std::stop_token& stop) {
    const int number = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    std::multimap<std::size_t, std::size_t> held;  // by the datagram that lets them go
    const std::size_t all = (mStream.size() + kDatagram - 1) / kDatagram;
    bool goesOn = true;
    for (std::size_t next = 0; next < all && goesOn; ++next) {
        if (const auto delay = mDamage.delayed.find(next); delay != mDamage.delayed.end()) {
            held.emplace(next + delay->second, next);
        } else if (!mDamage.dropped.contains(next)) {
            goesOn = SendOne(number, next, stop);
        }
        const auto [first, last] = held.equal_range(next);
        for (auto late = first; late != last && goesOn; ++late) {
            goesOn = SendOne(number, late->second, stop);
        }
    }
    close(number);
}

}  // namespace test
