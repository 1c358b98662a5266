#pragma once

#include <cstdint>
#include <netinet/in.h>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// A receiver of datagrams on 127.0.0.1, on a port that the system chooses.
class Loopback {
public:
    Loopback();
    ~Loopback();
    Loopback(const Loopback&) = delete;
    Loopback& operator=(const Loopback&) = delete;

    /// "127.0.0.1:PORT".
    [[nodiscard]] const std::string& Address() const { return mAddress; }

    /// Takes what has come so far.
    void Drain();

    std::vector<std::vector<std::uint8_t>> datagrams;

private:
    int mSocket;
    std::string mAddress;
};

/// A port of 127.0.0.1 that nobody has just now.
[[nodiscard]] std::string FreePort();

/// Whether somebody has a port of 127.0.0.1, or of that address, by the system's list: "/proc/net/udp",
/// "/proc/net/tcp".
[[nodiscard]] bool SomebodyHas(const std::string& port, const char* sockets, std::uint32_t address = 0x7F000001);

/// 127.0.0.1, and that port.
[[nodiscard]] sockaddr_in LocalAddress(std::uint16_t port);

/// Bytes of datagrams that wait for whoever listens at the port; empty where nobody does.
[[nodiscard]] std::optional<std::int64_t> BytesWaiting(std::uint16_t port);

/// Of so many, and some more, no system loses one yet.
inline constexpr std::int64_t kMostWaiting = 32768;

}  // namespace test
