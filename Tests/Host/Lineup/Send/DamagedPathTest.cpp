// What is sent by a protocol over a path that damages it, and what the watch at its other end says.
#include <lineup/Send.h>
#include <lineup/ToneChoice.h>
#include <lineup/Watch.h>
#include "Tests/Host/Lineup/Send/FastClock.h"
#include "Tests/Host/Lineup/Send/Loopback.h"
#include "Tests/Host/Lineup/Send/PathRelay.h"
#include "Tests/Host/Lineup/Send/ReceiverClock.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using lineup::StreamFormat;
using test::Treatment;

constexpr double kDamageFrom = 9;  // s of clip time: a cycle is heard before, by who comes in late too
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::int64_t kSpeed = 4;  // times as fast as real
#else
constexpr std::int64_t kSpeed = 10;
#endif

struct DamageCase {
    const char* name;
    const char* heard;  // with {} for the port
    const char* sent;
    StreamFormat format;
    Treatment damage;
    int oneOf;       // datagrams
    double seconds;  // of damage, clip time
    double watched;  // s
    bool isNamed;    // or mended on the way
};

constexpr double kShort = 16;
constexpr double kLong = 31;  // what waits at the sender is given up after a second or more
constexpr auto kTs = StreamFormat::TransportStream;
constexpr auto kL24 = StreamFormat::Linear24;

const DamageCase kDamageCases[] = {
    {"RtpLoses", "rtp://127.0.0.1:{}", "rtp://127.0.0.1:{}", kTs, Treatment::LosesSome, 700, 3, kShort, true},
    {"L24Loses", "rtp://127.0.0.1:{}?encoding=L24", "rtp://127.0.0.1:{}", kL24, Treatment::LosesSome, 500, 2, kShort,
     true},
    {"L24Swaps", "rtp://127.0.0.1:{}?encoding=L24", "rtp://127.0.0.1:{}", kL24, Treatment::SwapsSome, 20, 9, kShort,
     false},
    {"SrtMendsLoss", "srt://127.0.0.1:{}?mode=listener&latency=600000", "srt://127.0.0.1:{}?latency=600000", kTs,
     Treatment::LosesSome, 20, 9, kShort, false},
    {"SrtIsCut", "srt://127.0.0.1:{}?mode=listener", "srt://127.0.0.1:{}", kTs, Treatment::Holds, 1, 15, kLong, true},
    {"RistMendsLoss", "rist://@127.0.0.1:{}", "rist://127.0.0.1:{}", kTs, Treatment::LosesSome, 20, 9, kShort, false},
    {"RistLosesForGood", "rist://@127.0.0.1:{}?buffer=100", "rist://127.0.0.1:{}?buffer=100", kTs,
     Treatment::LosesForGood, 20, 5, kShort, true},
    {"RtmpStalls", "rtmp://127.0.0.1:{}/live/tone?listen=1", "rtmp://127.0.0.1:{}/live/tone", StreamFormat::Flv,
     Treatment::Holds, 1, 3, kShort, false},
};

class DamagedPath : public testing::TestWithParam<DamageCase> {};

std::string At(const char* url, const std::string& port) {
    return fmt::format(fmt::runtime(url), port);
}

TEST_P(DamagedPath, IsNamedUnlessTheProtocolMendsIt) {
    const DamageCase& row = GetParam();
    const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    const std::string port = test::FreePort();
    const bool isRtp = std::string_view(row.sent).starts_with("rtp");
    const bool isTcp = std::string_view(row.sent).starts_with("rtmp");
    test::PathRelay relay(isTcp ? test::PathRelay::Kind::Connections : test::PathRelay::Kind::Datagrams, port,
                          row.oneOf);
    std::atomic<bool> isOver = false;
    lineup::WatchReport report;
    std::thread receiver([&] {
        lineup::CheckSettings wanted;
        wanted.expect = "ebu-stereo-1000";
        wanted.forSeconds = row.watched;
        report = lineup::Watch(At(row.heard, port), importer, wanted);
        isOver = true;
    });
    const char* const sockets = isTcp ? "/proc/net/tcp" : "/proc/net/udp";
    const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!test::SomebodyHas(port, sockets) && !test::SomebodyHas(port, sockets, 0) && !isOver &&
           std::chrono::steady_clock::now() < patience) {
        std::this_thread::yield();
    }
    test::FastClock fast(kSpeed);
    test::ReceiverClock asTaken({relay.Port(), port}, [&isOver] { return isOver.load(); });
    lineup::SendSettings settings;
    settings.target = At(row.sent, relay.Port());
    settings.format = row.format;
    settings.videoCodec = lineup::kNoCodec;
    settings.audioCodec = isRtp ? "s302m" : isTcp ? "aac" : "mp2";
    settings.clock = isRtp ? static_cast<lineup::SendClock*>(&asTaken) : &fast;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    const lineup::Clip clip(importer, lineup::MakeSettings(*importer, {.ident = "ebu-stereo-1000"}));
    constexpr double kLongest = 200;
    std::string missing;
    try {
        Send(clip, settings, [&](const lineup::SendStatus& now) {
            const bool isDamaged = now.seconds >= kDamageFrom && now.seconds < kDamageFrom + row.seconds;
            relay.treatment = isDamaged ? row.damage : Treatment::Passes;
            return !isOver && now.seconds < kLongest;
        });
    } catch (const lineup::Error& error) {
        missing = error.what();
    }
    receiver.join();
    if (!missing.empty()) {
        ASSERT_NE(missing.find("were built without"), std::string::npos) << missing;
        GTEST_SKIP() << missing;
    }
    // Counted from where the receiver came in, and some of it waits in queues meanwhile.
    constexpr double kWithin = 5;
    std::string said;
    bool isNamed = false;
    for (const lineup::WatchedFault& fault : report.faults) {
        said += fmt::format("{:.3f} {}: {}\n", fault.begins, fault.fault.id, fault.fault.text);
        // A millisecond that is missing may be no more than a click.
        const bool isLoss = fault.fault.id == "dropout" || (row.format == kL24 && fault.fault.id == "click");
        isNamed =
            isNamed || ((isLoss || fault.fault.id.starts_with("samples-")) && fault.begins > kDamageFrom - kWithin &&
                        fault.begins < kDamageFrom + row.seconds + kWithin);
    }
    for (const lineup::CheckNote& note : report.notes) {
        said += note.text + "\n";
    }
    EXPECT_NEAR(report.seconds, row.watched, 0.1) << said << testing::PrintToString(notices);
    EXPECT_EQ(report.expected, "ebu-stereo-1000");
    EXPECT_EQ(isNamed, row.isNamed) << said;
    // Beside what is missing, a cycle with little left of it may be taken for something else.
    EXPECT_TRUE(row.isNamed || report.faults.empty()) << said;
}

INSTANTIATE_TEST_SUITE_P(, DamagedPath, testing::ValuesIn(kDamageCases),
                         [](const auto& made) { return std::string(made.param.name); });

// Whoever listened has gone with the connection, and another comes.
TEST(CutPath, IsConnectedAnewAndBothPartsAreRight) {
    const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    const std::string port = test::FreePort();
    test::PathRelay relay(test::PathRelay::Kind::Connections, port, 1);
    std::atomic<int> over = 0;
    const auto watch = [&](lineup::WatchReport& report, double seconds) {
        lineup::CheckSettings wanted;
        wanted.expect = "ebu-stereo-1000";
        wanted.forSeconds = seconds;
        report = lineup::Watch("rtmp://127.0.0.1:" + port + "/live/tone?listen=1", importer, wanted);
        ++over;
    };
    constexpr double kNever = 100;
    constexpr double kSecond = 7;
    constexpr double kCutAt = 8;
    lineup::WatchReport first;
    lineup::WatchReport second;
    std::thread firstReceiver([&] { watch(first, kNever); });
    std::thread secondReceiver;
    test::FastClock fast(kSpeed);
    lineup::SendSettings settings;
    settings.target = "rtmp://127.0.0.1:" + relay.Port() + "/live/tone";
    settings.format = StreamFormat::Flv;
    settings.videoCodec = lineup::kNoCodec;
    settings.clock = &fast;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    const lineup::Clip clip(importer, lineup::MakeSettings(*importer, {.ident = "ebu-stereo-1000"}));
    Send(clip, settings, [&](const lineup::SendStatus& now) {
        if (now.seconds > kCutAt && over == 0) {
            relay.treatment = Treatment::HangsUp;
        } else if (over == 1 && !secondReceiver.joinable()) {
            secondReceiver = std::thread([&] { watch(second, kSecond); });
            relay.treatment = Treatment::Passes;
        }
        return over < 2 && now.seconds < 2 * kNever;
    });
    firstReceiver.join();
    if (secondReceiver.joinable()) {
        secondReceiver.join();
    }
    const std::string said = testing::PrintToString(notices);
    EXPECT_TRUE(first.seconds > kCutAt - 3 && first.seconds < kCutAt + 2) << first.seconds << said;
    EXPECT_NEAR(second.seconds, kSecond, 0.1) << said;
    EXPECT_EQ(first.faults.size() + second.faults.size(), 0U);
    EXPECT_EQ(first.expected + second.expected, "ebu-stereo-1000ebu-stereo-1000");
    EXPECT_THAT(notices, testing::IsSupersetOf({testing::HasSubstr("connected to "),
                                                testing::HasSubstr("; trying on, and clip time goes on")}));
}

}  // namespace
