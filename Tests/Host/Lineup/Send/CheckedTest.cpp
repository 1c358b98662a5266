// What is sent by a protocol, and what the check at its other end says of it.
#include <lineup/Check.h>
#include <lineup/Idents.h>
#include <lineup/Send.h>
#include <lineup/ToneChoice.h>
#include "Tests/Host/Lineup/Send/FastClock.h"
#include "Tests/Host/Lineup/Send/Loopback.h"
#include "Tests/Host/Lineup/Send/ReceiverClock.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace {

// What keeps the sender from losing what nobody sends again.
enum class Pace {
    FiveTimesReal,  // the protocol
    AsTaken,        // the receiver's queue
};

struct PathCase {
    const char* name;
    const char* heard;  // with {} for the port; empty: by the session description that the sender gives
    const char* sent;
    const char* sockets;
    lineup::StreamFormat format;
    Pace pace = Pace::FiveTimesReal;
    int packetUs = 1000;
};

const PathCase kPathCases[] = {
    {"Srt", "srt://127.0.0.1:{}?mode=listener", "srt://127.0.0.1:{}", "/proc/net/udp",
     lineup::StreamFormat::TransportStream},
    {"Rist", "rist://@127.0.0.1:{}", "rist://127.0.0.1:{}", "/proc/net/udp", lineup::StreamFormat::TransportStream},
    {"Udp", "udp://127.0.0.1:{}", "udp://127.0.0.1:{}", "/proc/net/udp", lineup::StreamFormat::TransportStream,
     Pace::AsTaken},
    {"Rtp", "rtp://127.0.0.1:{}?buffer_size=4000000", "rtp://127.0.0.1:{}", "/proc/net/udp",
     lineup::StreamFormat::TransportStream, Pace::AsTaken},
    {"L24", "rtp://127.0.0.1:{}?encoding=L24&rate=48000", "rtp://127.0.0.1:{}", "/proc/net/udp",
     lineup::StreamFormat::Linear24, Pace::AsTaken},
    {"L24InShortPackets", "", "rtp://127.0.0.1:{}", "/proc/net/udp", lineup::StreamFormat::Linear24, Pace::AsTaken,
     125},
    {"Rtmp", "rtmp://127.0.0.1:{}/live/tone?listen=1", "rtmp://127.0.0.1:{}/live/tone", "/proc/net/tcp",
     lineup::StreamFormat::Flv},
    {"Flv", "tcp://127.0.0.1:{}?listen=1", "tcp://127.0.0.1:{}", "/proc/net/tcp", lineup::StreamFormat::Flv},
};

class Checked : public testing::TestWithParam<PathCase> {};

TEST_P(Checked, IsFoundRightAtTheOtherEnd) {
    const PathCase& row = GetParam();
    const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    const std::string port = test::FreePort();
    std::atomic<bool> isChecked = false;
    test::FastClock fast(5);
    test::ReceiverClock asTaken({port}, [&isChecked] { return isChecked.load(); });
    lineup::SendSettings settings;
    settings.target = fmt::format(fmt::runtime(row.sent), port);
    settings.format = row.format;
    settings.packetUs = row.packetUs;
    settings.width = 320;
    settings.height = 240;
    settings.clock = row.pace == Pace::AsTaken ? static_cast<lineup::SendClock*>(&asTaken) : &fast;
    const lineup::Clip clip(importer, lineup::MakeSettings(*importer, {.ident = "ebu-stereo-1000"}));
    const test::TemporaryFolder folder;
    std::string heard = fmt::format(fmt::runtime(row.heard), port);
    if (heard.empty()) {
        heard = folder.Path() / "sent.sdp";
        test::WriteFile(heard, DescribeSession(clip, settings));
    }
    lineup::CheckReport report;
    std::thread other([&] {
        lineup::CheckSettings wanted;
        wanted.expect = "ebu-stereo-1000";
        wanted.forSeconds = 10;  // after the codec, fewer edges can leave the polarity open
        report = lineup::Check(heard, importer, wanted);
        isChecked = true;
    });
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    constexpr std::uint32_t kEveryAddress = 0;
    const auto listens = [&] {
        return test::SomebodyHas(port, row.sockets) || test::SomebodyHas(port, row.sockets, kEveryAddress);
    };
    while (!listens() && !isChecked && std::chrono::steady_clock::now() < patience) {
        std::this_thread::yield();
    }
    constexpr double kLongest = 100;  // seconds of clip time
    std::string missing;
    double sent = 0;
    try {
        Send(clip, settings, [&](const lineup::SendStatus& now) {
            sent = now.seconds;
            return !isChecked && sent < kLongest;
        });
    } catch (const lineup::Error& error) {
        missing = error.what();
    }
    other.join();
    if (!missing.empty()) {
        ASSERT_NE(missing.find("were built without"), std::string::npos) << missing;
        GTEST_SKIP() << missing;
    }
    std::string said;
    for (const lineup::CheckFault& fault : report.faults) {
        said += fault.text + '\n';
    }
    for (const lineup::CheckNote& note : report.notes) {
        said += note.text + '\n';
    }
    const bool hasPicture = row.format != lineup::StreamFormat::Linear24;
    ASSERT_TRUE(report.sound && report.picture.has_value() == hasPicture) << said;
    EXPECT_EQ(report.sound->expected, "ebu-stereo-1000");
    EXPECT_EQ(hasPicture ? report.picture->card : "sd", "sd");
    EXPECT_EQ(report.verdict, lineup::CheckVerdict::Right) << said;
    EXPECT_LT(sent, kLongest) << "the check waited for the end of a stream that goes on";
}

INSTANTIATE_TEST_SUITE_P(, Checked, testing::ValuesIn(kPathCases),
                         [](const auto& made) { return std::string(made.param.name); });

}  // namespace
