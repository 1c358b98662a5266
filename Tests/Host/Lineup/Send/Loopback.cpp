#include "Tests/Host/Lineup/Send/Loopback.h"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace test {

Loopback::Loopback() : mSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    if (bind(mSocket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        getsockname(mSocket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        throw std::runtime_error("cannot receive on 127.0.0.1");
    }
    mAddress = "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
}

Loopback::~Loopback() {
    close(mSocket);
}

void Loopback::Drain() {
    std::array<std::uint8_t, 4096> bytes{};
    ssize_t size = 0;
    while ((size = recv(mSocket, bytes.data(), bytes.size(), MSG_DONTWAIT)) >= 0) {
        datagrams.emplace_back(bytes.begin(), bytes.begin() + size);
    }
}

}  // namespace test
