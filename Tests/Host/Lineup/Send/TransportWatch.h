#pragma once

#include "Tests/Host/Lineup/Send/TransportReader.h"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace test {

/// What a receiver saw of a stream, however long it was.
struct WatchFigures {
    std::int64_t datagrams = 0;
    std::int64_t errors = 0;
    std::vector<std::string> firstErrors;  ///< some, in words
    std::int64_t clocks = 0;
    double worstClockNs = 0;  ///< by which a clock lies off the line of the bit rate
    std::map<int, std::int64_t> units;
    std::int64_t wraps = 0;  ///< time stamps that started anew
    std::int64_t lateDatagrams = 0;
    double worstLateMs = 0;  ///< behind the line of the bit rate, from the earliest datagram on
};

/// Follows a transport stream of constant bit rate for as long as it lasts, and remembers nothing but figures: syntax,
/// counters and checksums; the clock; time stamps an even step apart; units that repeat, as those of a cycle do, so
/// that neither a lost nor a repeated sample goes unseen; and when each datagram came.
class TransportWatch {
public:
    static constexpr double kClockNs = 500;
    static constexpr double kLateArrivalMs = 2;

    explicit TransportWatch(std::int64_t bitsPerSecond) : mBitRate(bitsPerSecond) {}

    /// From here on every unit of a stream is that which came so many before it.
    void ExpectRepeats(int pid, std::size_t units) { mLanes[pid].repeats = units; }

    void Take(std::span<const std::uint8_t> packets, std::optional<std::int64_t> arrivalNs);
    [[nodiscard]] const WatchFigures& Figures() const { return mFigures; }

private:
    struct Lane {
        std::size_t repeats = 0;
        std::deque<std::vector<std::uint8_t>> last;
        std::optional<std::int64_t> pts;
        std::optional<std::int64_t> step;
    };
    void Complain(const std::string& text);
    void LookAtClock(const ReceivedClock& clock);
    void LookAtUnit(int pid, ReceivedUnit& unit);
    void LookAtArrival(std::int64_t packet, std::int64_t arrivalNs);
    [[nodiscard]] double NsOf(std::int64_t packets) const;

    std::int64_t mBitRate;
    TransportReader mReader;
    std::optional<ReceivedClock> mFirstClock;
    std::map<int, Lane> mLanes;
    std::optional<double> mEarliestNs;
    WatchFigures mFigures;
};

}  // namespace test
