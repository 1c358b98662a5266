#include <lineup/Send.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"
#include "Tests/Host/Lineup/Send/Loopback.h"
#include "Tests/Host/Lineup/Send/SimulatedClock.h"
#include "Tests/Host/Lineup/Send/TransportWatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using testing::IsEmpty;

// Everything is read, by a receiver that is emptied before each datagram. The stream begins a minute before its time
// stamps start anew, after 26 h 30 min 43.7 s. LINEUP_SEND_HOURS=24 has it run for a day of the stream's time.
TEST(LongStream, HasNoErrorNoGapAndNothingTwice) {
    constexpr double kAMinute = 1.0 / 60;
    constexpr std::int64_t kBeforeWrap = 95'383;  // s
    const char* const text = std::getenv("LINEUP_SEND_HOURS");
    const double hours = text == nullptr ? 2 * kAMinute : std::strtod(text, nullptr);
    const lineup::Clip clip = test::OpenClip(2);
    test::Loopback receiver;
    test::SimulatedClock clock;
    lineup::SendSettings settings;
    settings.target = "udp://" + receiver.Address();
    settings.width = 320;
    settings.height = 240;
    settings.audioCodec = "s302m";
    settings.bitsPerSecond = 4'000'007;
    settings.clock = &clock;
    settings.startSample = kBeforeWrap * 48000;
    settings.samples = static_cast<std::int64_t>(hours * 3600 * 48000);
    test::TransportWatch watch(settings.bitsPerSecond);
    watch.ExpectRepeats(0x100, 12);    // a group of pictures
    watch.ExpectRepeats(0x101, 3750);  // ten cycles of the ident in frames of 384 samples
    const auto take = [&] {
        receiver.Drain();
        for (const auto& datagram : receiver.datagrams) {
            watch.Take(datagram, clock.now);
        }
        receiver.datagrams.clear();
    };
    clock.onWait = [&take](std::int64_t) { take(); };
    const lineup::SendStatus status = Send(clip, settings);
    take();
    const test::WatchFigures& figures = watch.Figures();
    EXPECT_EQ(figures.errors, 0) << testing::PrintToString(figures.firstErrors);
    EXPECT_EQ(figures.datagrams, status.datagrams);
    EXPECT_LE(figures.worstClockNs, 50);  // a step of the clock is 37 ns
    EXPECT_EQ(figures.wraps, 2);          // of picture and sound
    EXPECT_EQ(figures.lateDatagrams, 0);
    EXPECT_NEAR(static_cast<double>(figures.units.at(0x100)), hours * 3600 * 25, 2);
    EXPECT_NEAR(static_cast<double>(figures.units.at(0x101)), hours * 3600 * 125, 2);
    RecordProperty("clocks", std::to_string(figures.clocks));
    RecordProperty("worstClockNs", std::to_string(figures.worstClockNs));
}

}  // namespace
