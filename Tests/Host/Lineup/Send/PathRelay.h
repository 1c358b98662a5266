#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

namespace test {

/// What a relay does to what it is given.
enum class Treatment : std::uint8_t {
    Passes,
    LosesSome,     ///< one datagram of so many on the way out
    LosesForGood,  ///< the same, and whoever receives cannot ask for it again
    SwapsSome,     ///< one of so many comes after the next one
    Holds,         ///< nothing passes; of datagrams, what comes meanwhile is lost
    HangsUp,       ///< connections end
};

/// Stands between a sender and a receiver on 127.0.0.1. Datagrams, or connections, pass in both directions.
class PathRelay {
public:
    /// Relays what comes in at Port() to the port `to`.
    enum class Kind : std::uint8_t { Datagrams, Connections };
    PathRelay(Kind kind, const std::string& to, int oneOf);

    [[nodiscard]] const std::string& Port() const { return mPort; }

    std::atomic<Treatment> treatment = Treatment::Passes;

private:
    void RelayDatagrams(const std::stop_token& stop) const;
    void RelayConnections(const std::stop_token& stop) const;

    std::uint16_t mTo;
    int mOneOf;
    int mSocket = -1;
    std::string mPort;
    std::jthread mThread;
};

}  // namespace test
