#include <lineup/Send.h>
#include "Tests/Host/Lineup/Export/MediaFile.h"
#include "Tests/Host/Lineup/Send/FastClock.h"
#include "Tests/Host/Lineup/Send/FlvReader.h"
#include "Tests/Host/Lineup/Send/Loopback.h"
#include "Tests/Host/Lineup/Send/TransportReader.h"
#include "Tests/Support/ChildProgram.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// What FFmpeg's program is asked for.
struct ReceiverCase {
    const char* name;
    const char* receiver;  // with {} for the port
    const char* target;
    const char* sockets;  // where the system lists who listens
    bool tellsLoss;       // the protocol notices that the receiver has gone
};

const ReceiverCase kReceiverCases[] = {
    {"Srt", "srt://127.0.0.1:{}?mode=listener", "srt://127.0.0.1:{}", "/proc/net/udp", true},
    {"Rist", "rist://@127.0.0.1:{}?buffer_size=50", "rist://127.0.0.1:{}", "/proc/net/udp", false},
    {"Rtmp", "rtmp://127.0.0.1:{}/live/tone", "rtmp://127.0.0.1:{}/live/tone", "/proc/net/tcp", true},
};

/// FFmpeg's program, which keeps the bytes that a protocol brings until they are so many, and ends.
class FfmpegReceiver {
public:
    FfmpegReceiver(const ReceiverCase& row, const std::string& port, const std::filesystem::path& file)
        : mFile(file), mProgram(Command(row, port, file), file.parent_path()) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!test::SomebodyHas(port, row.sockets) && mProgram.IsRunning() &&
               std::chrono::steady_clock::now() < end) {
            std::this_thread::yield();
        }
    }

    [[nodiscard]] bool IsRunning() const { return mProgram.IsRunning(); }
    [[nodiscard]] std::vector<std::uint8_t> Bytes() const { return test::ReadBytes(mFile); }

private:
    static std::vector<std::string> Command(const ReceiverCase& row, const std::string& port,
                                            const std::filesystem::path& file) {
        std::vector<std::string> command = {FFMPEG_PROGRAM, "-v", "error"};
        if (std::string_view(row.receiver).starts_with("rtmp")) {
            command.insert(command.end(), {"-listen", "1"});
        }
        const std::string url = fmt::format(fmt::runtime(row.receiver), port);
        command.insert(command.end(), {"-f", "data", "-i", url, "-map", "0", "-c", "copy", "-f", "data", "-fs", "60000",
                                       "-y", file.string()});
        return command;
    }

    std::filesystem::path mFile;
    test::ChildProgram mProgram;
};

/// What came first in a connection, by the stream's clock; its syntax is looked over on the way.
double FirstSeconds(const std::vector<std::uint8_t>& bytes, bool isFlv) {
    if (isFlv) {
        const test::ReceivedFlv flv = test::ReadFlv(bytes);
        EXPECT_THAT(flv.errors, IsEmpty());
        const auto pictures = flv.Media(9);
        EXPECT_TRUE(!pictures.empty() && pictures[0].IsEntry());
        return pictures.empty() ? 0 : static_cast<double>(pictures[0].ms) / 1e3;
    }
    EXPECT_EQ(bytes.at(0), 0x47);
    const auto stream = test::ReadTransport(std::span(bytes).first(bytes.size() / 188 * 188));
    EXPECT_THAT(stream.errors, IsEmpty());
    return stream.clocks.empty() ? 0 : static_cast<double>(stream.clocks[0].pcr) / 27e6;
}

class Receiver : public testing::TestWithParam<ReceiverCase> {};

// Ten times as fast as real, so that a second of the sender's patience is ten of clip time.
TEST_P(Receiver, ComesBackAndFindsClipTimeWhereItWouldHaveBeen) {
    const ReceiverCase& row = GetParam();
    const test::TemporaryFolder folder;
    const std::string port = test::FreePort();
    const lineup::Clip clip = test::OpenClip(2);
    test::FastClock clock(10);
    lineup::SendSettings settings;
    settings.target = fmt::format(fmt::runtime(row.target), port);
    settings.format = lineup::UsualFormat(settings.target);
    settings.width = 320;
    settings.height = 240;
    settings.clock = &clock;
    std::vector<std::string> notices;
    settings.notice = [&notices](const std::string& text) { notices.push_back(text); };
    std::vector<std::unique_ptr<FfmpegReceiver>> receivers;
    const auto receive = [&](const char* file) {
        receivers.push_back(std::make_unique<FfmpegReceiver>(row, port, folder / file));
    };
    receive("first");
    constexpr double kLongest = 200;  // seconds of clip time
    try {
        const lineup::SendStatus status = Send(clip, settings, [&](const lineup::SendStatus& now) {
            if (receivers.size() == 1 && !receivers[0]->IsRunning()) {
                receive("second");
            }
            return receivers.back()->IsRunning() && now.seconds < kLongest;
        });
        ASSERT_LT(status.seconds, kLongest) << testing::PrintToString(notices);
    } catch (const lineup::Error& error) {
        ASSERT_THAT(error.what(), HasSubstr("were built without"));
        GTEST_SKIP() << error.what();
    }
    ASSERT_EQ(receivers.size(), 2U);
    const bool isFlv = settings.format == lineup::StreamFormat::Flv;
    EXPECT_GT(FirstSeconds(receivers[1]->Bytes(), isFlv), FirstSeconds(receivers[0]->Bytes(), isFlv) + 0.5);
    // The fast clock takes a busy machine's pauses for leaps.
    std::erase_if(notices, [](const std::string& text) { return text.find("leapt") != std::string::npos; });
    ASSERT_FALSE(notices.empty());
    EXPECT_EQ(notices[0], "connected to " + settings.target);
    if (row.tellsLoss) {
        ASSERT_GE(notices.size(), 3U);
        EXPECT_THAT(notices[1], StartsWith("lost " + settings.target));
        EXPECT_EQ(notices[2], "connected to " + settings.target);
    }
}

INSTANTIATE_TEST_SUITE_P(, Receiver, testing::ValuesIn(kReceiverCases),
                         [](const auto& made) { return std::string(made.param.name); });

}  // namespace
