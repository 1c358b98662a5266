#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <thread>

namespace test {

/// What a relay does to the datagrams of a stream, counted from 0.
struct RelayDamage {
    std::set<std::size_t> dropped;
    std::map<std::size_t, std::size_t> delayed;  ///< until so many others have passed
};

/// Sends a transport stream to a port of 127.0.0.1, seven packets a datagram, as soon as somebody listens there and as
/// fast as he takes them: no datagram is lost that is not meant to be.
class UdpRelay {
public:
    static constexpr std::size_t kDatagram = std::size_t{7} * 188;

    UdpRelay(std::string stream, RelayDamage damage);

    /// "127.0.0.1:PORT", where nobody listens yet.
    [[nodiscard]] std::string Address() const;

private:
    void Run(const std::stop_token& stop);
    bool SendOne(int socket, std::size_t number, const std::stop_token& stop) const;

    std::string mStream;
    RelayDamage mDamage;
    std::uint16_t mPort;
    std::jthread mThread;
};

}  // namespace test
