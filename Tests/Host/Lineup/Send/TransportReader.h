#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

/// Reads transport streams as a receiver would, with nothing of what makes them.
namespace test {

/// One access unit.
struct ReceivedUnit {
    std::int64_t pts = 0;          ///< 90 kHz, 33 bits
    std::int64_t packetOfEnd = 0;  ///< the number of its last packet in the stream
    bool isEntry = false;
    std::vector<std::uint8_t> bytes;
};

struct ReceivedClock {
    std::int64_t packet = 0;
    std::int64_t pcr = 0;  ///< 27 MHz
};

struct ReceivedStream {
    std::int64_t packets = 0;
    std::vector<std::string> errors;  ///< of syntax, counters and checksums, each with its packet
    std::vector<ReceivedClock> clocks;
    std::map<int, std::vector<ReceivedUnit>> units;         ///< by PID
    std::map<int, std::vector<std::int64_t>> tablePackets;  ///< where the tables of a PID are
    std::map<int, int> types;                               ///< of the streams, by PID
};

/// Reads a stream as it comes.
class TransportReader {
public:
    /// Takes whole packets; what is read of them is added to `stream`, of which the caller may clear what it has seen.
    void Take(std::span<const std::uint8_t> bytes);

    /// Takes in the last units too that say how long they are and are whole.
    void End();

    ReceivedStream stream;

private:
    struct OpenUnit {
        ReceivedUnit unit;
        std::vector<std::uint8_t> pes;
    };
    void Complain(const std::string& what);
    void ReadPacket(std::span<const std::uint8_t> packet);
    void CheckCounter(int pid, unsigned counter, bool hasPayload);
    void ReadClock(std::span<const std::uint8_t> field);
    void ReadPayload(int pid, bool begins, bool isEntry, std::span<const std::uint8_t> payload);
    void ReadSection(int pid, std::span<const std::uint8_t> payload);
    void Close(int pid, OpenUnit& open);

    std::map<int, unsigned> mCounters;
    std::map<int, OpenUnit> mOpen;
};

/// Reads whole packets. The last unit of each PID is left out unless its length says that it is whole.
ReceivedStream ReadTransport(std::span<const std::uint8_t> bytes);

}  // namespace test
