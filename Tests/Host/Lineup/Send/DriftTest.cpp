// Senders whose clocks are off, and what the watch at the other end says of them. In real time: arrival is what counts.
#include <lineup/Send.h>
#include <lineup/ToneChoice.h>
#include <lineup/Watch.h>
#include "Tests/Host/Lineup/Send/Loopback.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

namespace {

using std::chrono::nanoseconds;
using std::chrono::steady_clock;

/// This machine's clock, too fast by so many millionths.
class DriftingClock final : public lineup::SendClock {
public:
    explicit DriftingClock(std::int64_t ppm) : mPpm(ppm) {}

    [[nodiscard]] std::int64_t NowNs() override {
        const std::int64_t ns = nanoseconds(steady_clock::now() - mStart).count();
        return ns + ns / kMillion * mPpm;
    }
    void WaitUntilNs(std::int64_t ns) override {
        std::this_thread::sleep_until(mStart + nanoseconds(ns - ns / kMillion * mPpm));
    }

private:
    static constexpr std::int64_t kMillion = 1'000'000;
    std::int64_t mPpm;
    steady_clock::time_point mStart = steady_clock::now();
};

struct DriftCase {
    std::int64_t ppm;
    const char* scheme;
    const char* format;  // behind the URL
};

// Ten seconds are needed, and some; where PES and datagrams beat against each other, or on a machine that is busy, more
// until it is sure.
const DriftCase kLinear[] = {{200, "rtp", "?encoding=L24"}, {-100, "rtp", "?encoding=L24"}};
const DriftCase kTransport[] = {{200, "udp", ""}, {-100, "udp", ""}};

/// What the watch says of such a sender's clock, once it knows it.
class DriftingPath {
public:
    DriftingPath(const DriftCase& row, const std::shared_ptr<const lineup::Importer>& importer)
        : mWatch([this, &row, importer] {
              lineup::CheckSettings wanted;
              wanted.expect = "ebu-stereo-1000";
              wanted.forSeconds = 60;
              bool isKnown = false;
              lineup::WatchListener listener;
              listener.onCycle = [&isKnown](const lineup::WatchedCycle& cycle) {
                  isKnown = cycle.clocks.senderPpm.has_value();
              };
              listener.progress = [&isKnown](const auto&...) { return !isKnown; };
              report = lineup::Watch(Target(row) + row.format, importer, wanted, listener);
              mIsOver = true;
          }),
          mSend([this, &row, importer] {
              DriftingClock clock(row.ppm);
              lineup::SendSettings settings;
              settings.target = Target(row);
              settings.format =
                  *row.format == '\0' ? lineup::StreamFormat::TransportStream : lineup::StreamFormat::Linear24;
              settings.videoCodec = lineup::kNoCodec;
              settings.audioCodec = "s302m";
              settings.clock = &clock;
              const lineup::Clip clip(importer, lineup::MakeSettings(*importer, {.ident = "ebu-stereo-1000"}));
              constexpr double kLongest = 100;
              Send(clip, settings,
                   [this](const lineup::SendStatus& now) { return !mIsOver && now.seconds < kLongest; });
          }) {}

    void Wait() {
        mWatch.join();
        mSend.join();
    }

    lineup::WatchReport report;

private:
    [[nodiscard]] std::string Target(const DriftCase& row) const {
        return std::string(row.scheme) + "://127.0.0.1:" + mPort;
    }

    std::string mPort = test::FreePort();
    std::atomic<bool> mIsOver = false;
    std::thread mWatch;
    std::thread mSend;
};

void ExpectToKnow(const DriftCase (&rows)[2]) {
    const auto importer = std::make_shared<const lineup::Importer>(TEST_BUNDLE);
    DriftingPath fast(rows[0], importer);
    DriftingPath slow(rows[1], importer);
    fast.Wait();
    slow.Wait();
    constexpr double kDoubt = 50;  // ppm, of a machine that is busy besides
    EXPECT_NEAR(fast.report.clocks.senderPpm.value_or(0), static_cast<double>(rows[0].ppm), kDoubt);
    EXPECT_NEAR(slow.report.clocks.senderPpm.value_or(0), static_cast<double>(rows[1].ppm), kDoubt);
    EXPECT_EQ(fast.report.faults.size() + slow.report.faults.size(), 0U);
}

TEST(SendersClock, IsKnownFromWhatArrives) {
    ExpectToKnow(kLinear);
}

TEST(SendersClock, IsKnownFromATransportStream) {
    if (std::getenv("LINEUP_SEND_HOURS") == nullptr) {
        GTEST_SKIP() << "a minute in real time: LINEUP_SEND_HOURS has it run";
    }
    ExpectToKnow(kTransport);
}

}  // namespace
