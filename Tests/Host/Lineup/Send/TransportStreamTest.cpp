#include "Host/Lineup/Send/StreamMaker.h"
#include "Tests/Host/Lineup/Export/MediaFile.h"
#include "Tests/Host/Lineup/Send/TransportReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

using lineup::StreamMaker;
using testing::IsEmpty;

constexpr std::int64_t kPicturePid = 0x100;
constexpr std::int64_t kSoundPid = 0x101;
constexpr std::int64_t kPcrWrap = (std::int64_t{1} << 33U) * 300;
constexpr std::int64_t kPtsWraps = std::int64_t{1} << 33U;

struct StreamCase {
    const char* name;
    const char* picture;
    const char* sound;
    lineup::Rational frameRate;
    int group;
    std::int64_t bitRate;
    std::int64_t hoursAhead;  // where in clip time the stream is looked at
};

// The clocks and time stamps start anew after 26 h 30 min 43.7 s.
constexpr std::int64_t kBeforeTheWrap = 26;

const StreamCase kStreamCases[] = {
    {"IntraAac", "h264", "aac", {25, 1}, 1, 12'345'678, 0},
    {"GroupAc3", "h264", "ac3", {30000, 1001}, 15, 0, 0},
    {"Mpeg2Mp2", "mpeg2", "mp2", {50, 1}, 12, 0, 0},
    {"Mpeg2Of422And302m", "mpeg2-422", "s302m", {24000, 1001}, 1, 20'000'000, 0},
    {"SoundAlone", "none", "s302m", {25, 1}, 1, 4'000'000, kBeforeTheWrap},
    {"AcrossTheWrap", "h264", "ac3", {60000, 1001}, 30, 3'000'003, kBeforeTheWrap},
};

lineup::SendSettings SettingsOf(const StreamCase& row) {
    lineup::SendSettings settings;
    settings.width = 320;
    settings.height = 240;
    settings.videoCodec = row.picture;
    settings.audioCodec = row.sound;
    settings.frameRate = row.frameRate;
    settings.groupFrames = row.group;
    settings.bitsPerSecond = row.bitRate;
    return settings;
}

std::vector<std::uint8_t> SlotsOf(StreamMaker& maker, std::int64_t first, std::int64_t end) {
    std::vector<std::uint8_t> bytes;
    for (std::int64_t slot = first; slot < end; ++slot) {
        maker.Mux().AppendSlot(slot, bytes);
    }
    return bytes;
}

// How far `later` is behind `earlier`, of numbers that start anew.
std::int64_t Behind(std::int64_t later, std::int64_t earlier, std::int64_t wrap) {
    const std::int64_t rest = (later - earlier) % wrap;
    return rest < -wrap / 2 ? rest + wrap : rest > wrap / 2 ? rest - wrap : rest;
}

class TransportStream : public testing::TestWithParam<StreamCase> {
protected:
    // Three seconds; where time stamps start anew, those around it.
    void SetUp() override {
        const lineup::Clip clip = test::OpenClip(2);
        StreamMaker maker(clip, SettingsOf(GetParam()));
        const auto& times = maker.Times();
        const std::int64_t middle = GetParam().hoursAhead > 0 ? times.SlotAt(kPtsWraps, 90'000) : times.SlotAt(2, 1);
        const std::int64_t half = times.SlotAt(3, 2);
        mFirstPacket = times.PacketsBefore(middle - half);
        mBitRate = times.BitsPerSecond();
        mSlotPackets = times.LeastPackets();
        mBytes = SlotsOf(maker, middle - half, middle + half);
        mStream = test::ReadTransport(mBytes);
    }

    void ExpectNoErrorAndAllTables();
    void ExpectClockOnTheLine();
    void ExpectRegularTimeStamps();

    [[nodiscard]] double NsOfPacketTime() const { return 1504e9 / static_cast<double>(mBitRate); }
    [[nodiscard]] double NsOfPacket(std::int64_t packet) const {
        return static_cast<double>(mFirstPacket + packet) * 1504e9 / static_cast<double>(mBitRate);
    }

    std::int64_t mFirstPacket = 0;
    std::int64_t mBitRate = 0;
    std::int64_t mSlotPackets = 0;
    std::vector<std::uint8_t> mBytes;
    test::ReceivedStream mStream;
};

void TransportStream::ExpectNoErrorAndAllTables() {
    EXPECT_THAT(mStream.errors, IsEmpty());
    EXPECT_EQ(mStream.types.contains(kPicturePid), std::string(GetParam().picture) != "none");
    EXPECT_TRUE(mStream.types.contains(kSoundPid));
    for (const int pid : {0x0000, 0x1000}) {  // as receivers are promised: ten times a second
        const auto& packets = mStream.tablePackets[pid];
        ASSERT_GE(packets.size(), 25U);
        for (std::size_t i = 1; i < packets.size(); ++i) {
            EXPECT_LE(NsOfPacket(packets[i]) - NsOfPacket(packets[i - 1]), 100e6);
        }
    }
    EXPECT_GE(mStream.tablePackets[0x0011].size(), 2U);
}

// Packet n of a constant bit rate leaves n packets after packet 0: what the clock says of it lies on that line.
void TransportStream::ExpectClockOnTheLine() {
    ASSERT_GE(mStream.clocks.size(), 100U);
    double worstNs = 0;
    for (std::size_t i = 0; i < mStream.clocks.size(); ++i) {
        const test::ReceivedClock& clock = mStream.clocks[i];
        const double line = NsOfPacket(clock.packet) * 27e6 / 1e9;
        const double off = std::remainder(static_cast<double>(clock.pcr) - line, static_cast<double>(kPcrWrap));
        worstNs = std::max(worstNs, std::abs(off) / 27e6 * 1e9);
        if (i > 0) {  // as receivers are promised, with a good deal in hand
            EXPECT_LE(NsOfPacket(clock.packet) - NsOfPacket(mStream.clocks[i - 1].packet), 40e6);
        }
    }
    // A step of the clock is 37 ns; measured: as much.
    EXPECT_LE(worstNs, 50) << "a clock (PCR) lies " << worstNs / NsOfPacketTime() << " packets off the line";
    RecordProperty("worstNs", std::to_string(worstNs));
}

void TransportStream::ExpectRegularTimeStamps() {
    for (const auto& [pid, units] : mStream.units) {
        ASSERT_GE(units.size(), 40U);
        std::int64_t step = 0;
        for (std::size_t i = 1; i < units.size(); ++i) {
            const std::int64_t now = Behind(units[i].pts, units[i - 1].pts, kPtsWraps);
            step = step == 0 ? now : step;
            EXPECT_NEAR(static_cast<double>(now), static_cast<double>(step), 1.0)
                << "time stamp (PTS) " << i << " of PID " << pid << " is " << units[i].pts << " behind "
                << units[i - 1].pts;
        }
        for (const test::ReceivedUnit& unit : units) {
            const auto clock = static_cast<std::int64_t>(NsOfPacket(unit.packetOfEnd) * 90e3 / 1e9);
            const std::int64_t early = Behind(unit.pts, clock % kPtsWraps, kPtsWraps);
            EXPECT_GT(early, 0) << "PTS against PCR, PID " << pid;
            EXPECT_LT(early, 90'000) << "PTS against PCR, PID " << pid;  // the longest that a receiver keeps anything
        }
    }
}

TEST_P(TransportStream, HasNoErrorItsClockOnTheLineAndRegularTimeStamps) {
    ExpectNoErrorAndAllTables();
    ExpectClockOnTheLine();
    ExpectRegularTimeStamps();
}

INSTANTIATE_TEST_SUITE_P(, TransportStream, testing::ValuesIn(kStreamCases),
                         [](const auto& made) { return std::string(made.param.name); });

// Whatever was made before, and whenever: the sound's encoder too is taken up as if it had always run.
TEST(StreamSlots, AreTheSameWhereverAStreamIsBegun) {
    const lineup::Clip clip = test::OpenClip(2);
    for (const char* const sound : {"aac", "ac3", "s302m"}) {
        lineup::SendSettings settings = SettingsOf(kStreamCases[0]);
        settings.audioCodec = sound;
        settings.bitsPerSecond = 0;
        StreamMaker early(clip, settings);
        StreamMaker late(clip, settings);
        constexpr std::int64_t kSince1970 = 1'700'000'000LL * 50;  // slots
        static_cast<void>(SlotsOf(early, kSince1970, kSince1970 + 60));
        EXPECT_TRUE(std::ranges::equal(SlotsOf(early, kSince1970 + 60, kSince1970 + 80),
                                       SlotsOf(late, kSince1970 + 60, kSince1970 + 80)))
            << sound;
    }
}

}  // namespace
