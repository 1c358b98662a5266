#include "Tests/Support/ChildProgram.h"
#include "Tests/Support/RunProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <csignal>
#include <sched.h>
#include <sstream>
#include <string>
#include <sys/stat.h>

namespace {

using testing::HasSubstr;

constexpr std::size_t kTsPacket = 188;

std::vector<std::string> SmallSend(const std::string& target, const std::vector<std::string>& more) {
    std::vector<std::string> command = {TEST_LINEUP, "send",          target, "--size",
                                        "320x240",   "--audio-codec", "mp2",  "--json"};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

// The stream goes into a pipe with a name; when its first packets have come, the program is told to end.
TEST(SendProgram, EndsBySignalWithWholePackets) {
    for (const int signal : {SIGINT, SIGTERM}) {
        const test::TemporaryFolder folder;
        const std::filesystem::path pipe = folder.Path() / "pipe";
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        test::ChildProgram program(SmallSend(pipe, {}), folder.Path());
        std::ifstream stream(pipe, std::ios::binary);
        std::array<char, 50 * kTsPacket> first{};
        stream.read(first.data(), first.size());
        program.Send(signal);
        const std::string rest{std::istreambuf_iterator<char>(stream), {}};
        const test::Ending ending = program.Wait();
        EXPECT_EQ(ending.signal, signal) << ending.err;
        EXPECT_EQ(rest.size() % kTsPacket, 0U);
        for (std::size_t at = 0; at < rest.size(); at += kTsPacket) {
            EXPECT_EQ(rest[at], 0x47);
        }
        EXPECT_THAT(ending.out, HasSubstr("\"ended\":true"));
    }
}

TEST(SendProgram, PrintsALineOfJsonASecond) {
    const test::TemporaryFolder folder;
    const test::Ending ending = test::RunChild(SmallSend("out.ts", {"--clock", "free", "--for", "3"}), folder.Path());
    EXPECT_EQ(ending.exitCode, 0) << ending.err;
    std::istringstream lines(ending.out);
    std::vector<nlohmann::json> statuses;
    for (std::string line; std::getline(lines, line);) {
        statuses.push_back(nlohmann::json::parse(line));
    }
    ASSERT_EQ(statuses.size(), 4U);
    EXPECT_NEAR(statuses[0]["seconds"], 1.0, 0.03);
    EXPECT_NEAR(statuses[1]["seconds"], 2.0, 0.05);
    EXPECT_EQ(statuses[3]["bytes"], std::filesystem::file_size(folder.Path() / "out.ts"));
    EXPECT_EQ(statuses[3]["late"], 0);
    EXPECT_TRUE(statuses[3]["ended"]);
}

TEST(SendProgram, SaysWhatIsWrong) {
    struct Row {
        std::vector<std::string> arguments;
        int exitCode;
        const char* text;
    };
    const test::TemporaryFolder folder;
    ASSERT_EQ(test::RunChild(SmallSend("there.ts", {"--clock", "free", "--for", "0.1"}), folder.Path()).exitCode, 0);
    const std::vector<Row> rows = {
        {{"there.ts"}, 2, "exists already"},
        {{"gone/out.ts"}, 1, "cannot open gone/out.ts for writing: No such file or directory"},
        {{"udp://127.0.0.1"}, 2, "must have a port"},
        {{"gopher://127.0.0.1:70"}, 2, "must begin with udp://"},
        {{"udp://127.0.0.1:9?localaddr=192.0.2.1"}, 1, "cannot send from 192.0.2.1 port any"},
        {{"x.ts", "--bitrate", "fast"}, 2, "--bitrate fast: must be bits a second"},
        {{"x.ts", "--bitrate", "90k"}, 2, "which this picture and sound need"},
        {{"x.ts", "--gop", "0.5"}, 2, "must be a whole number of frames"},
        {{"x.ts", "--clock", "sand"}, 2, "must be steady, wall or free"},
        {{"udp://127.0.0.1:9", "--clock", "free"}, 2, "is for a file or a pipe"},
        {{"x.ts", "--format", "l24"}, 2, "is for rtp:// alone"},
        {{"x.ts", "--format", "avi"}, 2, "must be ts, flv or l24"},
        {{"x.flv"}, 2, "--audio-codec mp2: is not for flv"},  // by its name
        {{"rtmp://127.0.0.1:9/a/b"}, 2, "--audio-codec mp2: is not for flv"},
    };
    for (const Row& row : rows) {
        const test::Ending ending = test::RunChild(
            SmallSend(row.arguments[0], {row.arguments.begin() + 1, row.arguments.end()}), folder.Path());
        EXPECT_EQ(ending.exitCode, row.exitCode) << ending.err;
        EXPECT_THAT(ending.err, HasSubstr(row.text));
    }
}

// In a network of its own, in which not even the loopback is up.
TEST(SendProgram, SaysThatThereIsNoNetwork) {
    constexpr int kNotPrepared = 126;
    const test::TemporaryFolder folder;
    const auto leave = [] { return unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0; };
    struct Row {
        const char* target;
        int exitCode;
        const char* text;
    };
    for (const Row& row : {Row{"udp://127.0.0.1:9", 1, "cannot send to 127.0.0.1:9: Network is unreachable"},
                           Row{"tcp://127.0.0.1:9", 0, "tcp://127.0.0.1:9: Network is unreachable; trying on"}}) {
        const test::Ending ending = test::RunChild(SmallSend(row.target, {"--for", "0.2"}), folder.Path(), leave);
        if (ending.exitCode == kNotPrepared) {
            GTEST_SKIP() << "this system lets nobody leave the network";
        }
        EXPECT_EQ(ending.exitCode, row.exitCode) << ending.err;
        EXPECT_THAT(ending.err + ending.out, HasSubstr(row.text));
    }
}

}  // namespace
