#include "Tests/Host/Lineup/Send/Loopback.h"

#include <fmt/format.h>

#include <arpa/inet.h>
#include <array>
#include <fstream>
#include <iterator>
#include <netinet/in.h>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace test {

Loopback::Loopback() : mSocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = LocalAddress(0);
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

std::string FreePort() {
    const std::string address = Loopback().Address();
    return address.substr(address.find(':') + 1);
}

bool SomebodyHas(const std::string& port, const char* sockets, std::uint32_t address) {
    std::ifstream list(sockets);
    const std::string all{std::istreambuf_iterator<char>(list), {}};
    return all.find(fmt::format("{:08X}:{:04X} ", htonl(address), std::stoi(port))) != std::string::npos;
}

sockaddr_in LocalAddress(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

std::optional<std::int64_t> BytesWaiting(std::uint16_t port) {
    const std::string wanted = fmt::format(":{:04X}", port);
    std::ifstream sockets("/proc/net/udp");
    for (std::string line; std::getline(sockets, line);) {
        std::istringstream words(line);
        std::string slot;
        std::string local;
        std::string remote;
        std::string state;
        std::string queues;
        words >> slot >> local >> remote >> state >> queues;
        if (local.ends_with(wanted)) {
            return std::stoll(queues.substr(queues.find(':') + 1), nullptr, 16);
        }
    }
    return std::nullopt;
}

}  // namespace test
