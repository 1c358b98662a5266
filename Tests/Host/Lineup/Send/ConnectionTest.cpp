#include <lineup/Send.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"
#include "Tests/Host/Lineup/Send/Loopback.h"
#include "Tests/Host/Lineup/Send/SimulatedClock.h"
#include "Tests/Host/Lineup/Send/TransportReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <netinet/in.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

using testing::HasSubstr;

// A receiver on a port that the system chooses. It takes one caller at a time, and what has come so far.
class TcpReceiver {
public:
    TcpReceiver() : mListener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        if (bind(mListener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(mListener, 1) != 0 ||
            getsockname(mListener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
            throw std::runtime_error("cannot listen on 127.0.0.1");
        }
        url = "tcp://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
    }
    ~TcpReceiver() {
        HangUp();
        close(mListener);
    }
    TcpReceiver(const TcpReceiver&) = delete;
    TcpReceiver& operator=(const TcpReceiver&) = delete;

    void Take() {
        if (mCaller < 0) {
            mCaller = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
            if (mCaller < 0) {
                return;
            }
            calls.emplace_back();
        }
        std::array<std::uint8_t, 4096> bytes{};
        ssize_t size = 0;
        while ((size = recv(mCaller, bytes.data(), bytes.size(), 0)) > 0) {
            calls.back().insert(calls.back().end(), bytes.begin(), bytes.begin() + size);
        }
    }

    void HangUp() {
        if (mCaller >= 0) {
            close(mCaller);
        }
        mCaller = -1;
    }

    std::string url;
    std::vector<std::vector<std::uint8_t>> calls;  // what came in each

private:
    int mListener;
    int mCaller = -1;
};

// Until then the clock stands still for nobody: what is due meanwhile is lost, and clip time goes on.
TEST(Connection, IsMadeAgainWhenAReceiverHasGoneAway) {
    constexpr std::size_t kEnough = 500'000;
    const lineup::Clip clip = test::OpenClip(2);
    TcpReceiver receiver;
    test::SimulatedClock clock;
    lineup::SendSettings settings;
    settings.target = receiver.url;
    settings.width = 320;
    settings.height = 240;
    settings.audioCodec = "mp2";
    settings.clock = &clock;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    bool hungUp = false;
    const lineup::SendStatus status = Send(clip, settings, [&](const lineup::SendStatus&) {
        receiver.Take();
        if (!hungUp && !receiver.calls.empty() && receiver.calls[0].size() > kEnough) {
            receiver.HangUp();
            hungUp = true;
        }
        return receiver.calls.size() < 2 || receiver.calls[1].size() < kEnough;
    });
    // Simulated time may be faster than the connection.
    std::erase_if(notices,
                  [](const std::string& text) { return text.find("as fast as it is sent") != std::string::npos; });
    ASSERT_EQ(notices.size(), 3U);
    EXPECT_EQ(notices[0], "connected to " + receiver.url);
    EXPECT_THAT(notices[1], HasSubstr("lost " + receiver.url));
    EXPECT_EQ(notices[2], "connected to " + receiver.url);
    EXPECT_GT(status.lostDatagrams, 0);
    std::vector<std::int64_t> firstClock;
    for (const auto& call : receiver.calls) {  // each is whole datagrams in their order, but for those a slow one loses
        const auto stream = test::ReadTransport(std::span(call).first(call.size() / 188 * 188));
        ASSERT_FALSE(stream.clocks.empty());
        firstClock.push_back(stream.clocks.front().pcr);
        EXPECT_EQ(call[0], 0x47);
    }
    EXPECT_GT(firstClock[1] - firstClock[0], 27'000'000);  // a second at least: that long it waits before it tries
}

// Sound alone, until something is said.
std::string FirstNotice(const std::string& target, lineup::SendStatus& status) {
    const lineup::Clip clip = test::OpenClip(2);
    test::SimulatedClock clock;
    lineup::SendSettings settings;
    settings.target = target;
    settings.format = lineup::UsualFormat(target);
    settings.videoCodec = lineup::kNoCodec;
    settings.clock = &clock;
    std::string notice;
    settings.notice = [&notice](const std::string& text) { notice = notice.empty() ? text : notice; };
    status = Send(clip, settings, [&](const lineup::SendStatus&) { return notice.empty(); });
    return notice;
}

TEST(Connection, SaysWhyItCannotBeMadeAndTriesOn) {
    std::string gone;
    {
        const TcpReceiver receiver;
        gone = receiver.url;
    }
    const TcpReceiver taken;
    const std::string noHost = "no-such-host.invalid";
    struct Row {
        std::string url;
        std::string cause;
    };
    const Row rows[] = {
        {gone, "Connection refused"},
        {taken.url + "?listen=1", "Address already in use"},
        {"tcp://" + noHost + ":1", "Failed to resolve hostname " + noHost},
        {"rtmp://" + noHost + "/live/tone", noHost},
    };
    for (const Row& row : rows) {
        lineup::SendStatus status;
        const std::string notice = FirstNotice(row.url, status);
        EXPECT_THAT(notice, AllOf(HasSubstr("cannot reach " + row.url + ": "), HasSubstr(row.cause),
                                  HasSubstr("; trying on, and clip time goes on")));
        EXPECT_EQ(status.lostDatagrams, status.datagrams);
    }
}

// It takes nothing at all, while simulated time runs on: what is lost is lost by whole datagrams, and the end comes.
TEST(Connection, LosesWhatASlowReceiverDoesNotTake) {
    const lineup::Clip clip = test::OpenClip(2);
    TcpReceiver receiver;
    test::SimulatedClock clock;
    lineup::SendSettings settings;
    settings.target = receiver.url;
    settings.videoCodec = lineup::kNoCodec;
    settings.bitsPerSecond = 50'000'000;  // soon too much
    settings.clock = &clock;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    bool takes = false;
    const lineup::SendStatus status = Send(clip, settings, [&](const lineup::SendStatus& now) {
        takes = takes || (now.lostDatagrams > 0 && notices.size() > 1);
        if (takes) {
            receiver.Take();
        }
        return receiver.calls.empty() || receiver.calls[0].size() < 1'000'000;
    });
    ASSERT_EQ(notices.size(), 2U);
    EXPECT_EQ(notices[1], receiver.url + " does not take the stream as fast as it is sent; some of it is lost");
    EXPECT_GT(status.lostDatagrams, 0);
    for (std::size_t at = 0; at < 1'000'000; at += 188) {
        ASSERT_EQ(receiver.calls[0][at], 0x47) << at;
    }
}

// One target never reads: it is given up by its own thread, and the one beside it gets every datagram.
TEST(Connection, ThatTakesNothingIsGivenUpAndHoldsUpNobody) {
    const lineup::Clip clip = test::OpenClip(2);
    const TcpReceiver deaf;
    test::Loopback beside;
    test::SimulatedClock clock;
    std::size_t received = 0;
    const auto take = [&] {
        beside.Drain();
        received += beside.datagrams.size();
        beside.datagrams.clear();
    };
    clock.onWait = [&take](std::int64_t) { take(); };
    lineup::SendSettings settings;
    settings.target = deaf.url;
    settings.moreTargets = {"udp://" + beside.Address()};
    settings.videoCodec = lineup::kNoCodec;
    settings.bitsPerSecond = 50'000'000;
    settings.connectionStall = std::chrono::milliseconds(50);
    settings.clock = &clock;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    const std::string gaveUp =
        "lost " + deaf.url + ": it has taken nothing for 0.05 s; trying on, and clip time goes on";
    constexpr double kLongest = 200;  // s of clip time
    const lineup::SendStatus status = Send(clip, settings, [&](const lineup::SendStatus& now) {
        return std::ranges::find(notices, gaveUp) == notices.end() && now.seconds < kLongest;
    });
    take();
    EXPECT_THAT(notices, testing::Contains(gaveUp));
    EXPECT_EQ(static_cast<std::int64_t>(received), status.datagrams);
    EXPECT_GT(status.lostDatagrams, 0);
}

}  // namespace
