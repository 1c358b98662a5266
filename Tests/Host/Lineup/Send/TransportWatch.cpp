#include "Tests/Host/Lineup/Send/TransportWatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace test {

namespace {

constexpr std::int64_t kPtsEnd = std::int64_t{1} << 33U;
constexpr double kPcrEnd = static_cast<double>(kPtsEnd) * 300;
constexpr double kPacketBits = 1504;
constexpr double kNs = 1e9;

}  // namespace

double TransportWatch::NsOf(std::int64_t packets) const {
    return static_cast<double>(packets) * kPacketBits * kNs / static_cast<double>(mBitRate);
}

void TransportWatch::Complain(const std::string& text) {
    constexpr std::size_t kSaid = 10;
    ++mFigures.errors;
    if (mFigures.firstErrors.size() < kSaid) {
        mFigures.firstErrors.push_back(text);
    }
}

// Long double: after a day the line is 2e12 steps long, and a step is what counts.
void TransportWatch::LookAtClock(const ReceivedClock& clock) {
    constexpr long double kPcrASecond = 27e6L;
    mFirstClock = mFirstClock.value_or(clock);
    const long double line = static_cast<long double>(clock.packet - mFirstClock->packet) *
                             static_cast<long double>(kPacketBits) * kPcrASecond / static_cast<long double>(mBitRate);
    const long double off = std::remainder(static_cast<long double>(clock.pcr - mFirstClock->pcr) - line,
                                           static_cast<long double>(kPcrEnd));
    const auto ns = static_cast<double>(std::abs(off) / kPcrASecond) * kNs;
    mFigures.worstClockNs = std::max(mFigures.worstClockNs, ns);
    ++mFigures.clocks;
    if (ns > kClockNs) {
        Complain(fmt::format("packet {}: the clock (PCR) is {:.0f} ns off the line of the bit rate", clock.packet, ns));
    }
}

void TransportWatch::LookAtUnit(int pid, ReceivedUnit& unit) {
    Lane& lane = mLanes[pid];
    if (lane.pts) {
        const std::int64_t step = (unit.pts - *lane.pts + kPtsEnd) % kPtsEnd;
        lane.step = lane.step.value_or(step);
        mFigures.wraps += unit.pts < *lane.pts ? 1 : 0;
        if (std::abs(step - *lane.step) > 1) {
            Complain(fmt::format("packet {}: a time stamp of PID {} is {} behind the last, not {}", unit.packetOfEnd,
                                 pid, step, *lane.step));
        }
    }
    lane.pts = unit.pts;
    ++mFigures.units[pid];
    if (lane.repeats == 0) {
        return;
    }
    lane.last.push_back(std::move(unit.bytes));
    if (lane.last.size() > lane.repeats) {
        if (lane.last.front() != lane.last.back()) {
            Complain(
                fmt::format("packet {}: a unit of PID {} is not that of the cycle before: something is lost, or "
                            "came twice",
                            unit.packetOfEnd, pid));
        }
        lane.last.pop_front();
    }
}

void TransportWatch::LookAtArrival(std::int64_t packet, std::int64_t arrivalNs) {
    const double behind = static_cast<double>(arrivalNs) - NsOf(packet);
    mEarliestNs = std::min(mEarliestNs.value_or(behind), behind);
    constexpr double kNsOfMs = 1e6;
    const double lateMs = (behind - *mEarliestNs) / kNsOfMs;
    mFigures.worstLateMs = std::max(mFigures.worstLateMs, lateMs);
    mFigures.lateDatagrams += lateMs > kLateArrivalMs ? 1 : 0;
}

void TransportWatch::Take(std::span<const std::uint8_t> packets, std::optional<std::int64_t> arrivalNs) {
    if (arrivalNs) {
        LookAtArrival(mReader.stream.packets, *arrivalNs);
    }
    mReader.Take(packets);
    ++mFigures.datagrams;
    ReceivedStream& stream = mReader.stream;
    std::ranges::for_each(stream.errors, [this](const std::string& error) { Complain(error); });
    std::ranges::for_each(stream.clocks, [this](const ReceivedClock& clock) { LookAtClock(clock); });
    for (auto& [pid, units] : stream.units) {
        for (ReceivedUnit& unit : units) {
            LookAtUnit(pid, unit);
        }
        units.clear();
    }
    stream.errors.clear();
    stream.clocks.clear();
    stream.tablePackets.clear();
}

}  // namespace test
