// What is sent by a protocol, and what the check at its other end says of it.
#include <lineup/Check.h>
#include <lineup/Idents.h>
#include <lineup/Send.h>
#include <lineup/ToneChoice.h>
#include "Tests/Host/Lineup/Send/FastClock.h"
#include "Tests/Host/Lineup/Send/Loopback.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace {

struct PathCase {
    const char* name;
    const char* heard;  // with {} for the port
    const char* sent;
    const char* sockets;
    lineup::StreamFormat format;
    int speed = 5;  // times as fast as real
};

constexpr int kDatagrams = 2;  // which nobody sends again
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

const PathCase kPathCases[] = {
    {"Srt", "srt://127.0.0.1:{}?mode=listener", "srt://127.0.0.1:{}", "/proc/net/udp",
     lineup::StreamFormat::TransportStream},
    {"Rist", "rist://@127.0.0.1:{}", "rist://127.0.0.1:{}", "/proc/net/udp", lineup::StreamFormat::TransportStream},
    {"Udp", "udp://127.0.0.1:{}", "udp://127.0.0.1:{}", "/proc/net/udp", lineup::StreamFormat::TransportStream,
     kDatagrams},
    {"Rtp", "rtp://127.0.0.1:{}?buffer_size=4000000", "rtp://127.0.0.1:{}", "/proc/net/udp",
     lineup::StreamFormat::TransportStream, kDatagrams},
    {"Rtmp", "rtmp://127.0.0.1:{}/live/tone?listen=1", "rtmp://127.0.0.1:{}/live/tone", "/proc/net/tcp",
     lineup::StreamFormat::Flv},
    {"Flv", "tcp://127.0.0.1:{}?listen=1", "tcp://127.0.0.1:{}", "/proc/net/tcp", lineup::StreamFormat::Flv},
};

class Checked : public testing::TestWithParam<PathCase> {};

TEST_P(Checked, IsFoundRightAtTheOtherEnd) {
    const PathCase& row = GetParam();
    if (kIsSanitized && row.speed == kDatagrams) {
        GTEST_SKIP() << "A sanitized decoder is too slow for datagrams that are not sent again.";
    }
    const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    const std::string port = test::FreePort();
    lineup::CheckReport report;
    std::atomic<bool> isChecked = false;
    std::thread other([&] {
        lineup::CheckSettings settings;
        settings.expect = "ebu-stereo-1000";
        settings.forSeconds = 10;  // after the codec, fewer edges can leave the polarity open
        report = lineup::Check(fmt::format(fmt::runtime(row.heard), port), importer, settings);
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
    test::FastClock clock(row.speed);
    lineup::SendSettings settings;
    settings.target = fmt::format(fmt::runtime(row.sent), port);
    settings.format = row.format;
    settings.width = 320;
    settings.height = 240;
    settings.clock = &clock;
    const lineup::Clip clip(importer, lineup::MakeSettings(*importer, {.ident = "ebu-stereo-1000"}));
    std::string missing;
    try {
        Send(clip, settings, [&](const lineup::SendStatus& now) { return !isChecked && now.seconds < kLongest; });
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
    ASSERT_TRUE(report.sound && report.picture);
    EXPECT_EQ(report.sound->expected, "ebu-stereo-1000");
    EXPECT_EQ(report.picture->card, "sd");
    EXPECT_EQ(report.verdict, lineup::CheckVerdict::Right) << said;
}

INSTANTIATE_TEST_SUITE_P(, Checked, testing::ValuesIn(kPathCases),
                         [](const auto& made) { return std::string(made.param.name); });

}  // namespace
