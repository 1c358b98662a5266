// Recordings that arrive while they are read, from a socket of this machine: a URL like any other, without a network.
#include <lineup/Error.h>
#include <lineup/Exporter.h>
#include "Host/Lineup/Check/Reader/RecordingReader.h"
#include "Tests/Host/Lineup/Check/Reader/MadeRecordings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using lineup::RecordingReader;
using testing::HasSubstr;

// A socket in the file system, and a thread that serves the one who connects.
class Sender {
public:
    Sender(const std::filesystem::path& path, std::function<void(int)> serve)
        : mListener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.string().copy(address.sun_path, sizeof address.sun_path - 1);
        const bool isThere = bind(mListener, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                             listen(mListener, 1) == 0;
        EXPECT_TRUE(isThere) << std::strerror(errno);
        mThread = std::thread([this, serve = std::move(serve)] {
            const int connection = accept4(mListener, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection >= 0) {
                serve(connection);
                close(connection);
            }
        });
    }
    ~Sender() {
        shutdown(mListener, SHUT_RDWR);
        mThread.join();
        close(mListener);
    }
    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

private:
    int mListener;
    std::thread mThread;
};

void SendAll(int connection, const std::string& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t sent = send(connection, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (sent <= 0) {
            return;
        }
        done += static_cast<std::size_t>(sent);
    }
}

// Until the other end has gone away.
void WaitForTheEnd(int connection) {
    char nothing = 0;
    while (recv(connection, &nothing, 1, 0) > 0) {
    }
}

class Streams : public test::MadeRecordings {
protected:
    // Two seconds of a tone as a transport stream, which may begin and end anywhere.
    [[nodiscard]] std::string Stream() {
        return test::ReadFile(Make("-f lavfi -i sine=1000:d=2:r=48000 -c:a mp2", "tone.ts"));
    }

    [[nodiscard]] std::filesystem::path Socket() const { return Folder() / "s"; }

    [[nodiscard]] std::unique_ptr<RecordingReader> Open(std::chrono::milliseconds stall,
                                                        const lineup::DecoderProcess::KeepGoing& keepGoing = {}) const {
        lineup::DecoderSettings settings;
        settings.stall = stall;
        return RecordingReader::Open("unix://" + Socket().string(), settings, keepGoing);
    }

    static std::size_t ReadAll(RecordingReader& reader) {
        std::vector<float> samples(4096);
        const std::array<float*, 1> inputs = {samples.data()};
        std::size_t total = 0;
        while (const std::size_t count = reader.Read(inputs, samples.size())) {
            total += count;
        }
        return total;
    }
};

constexpr std::chrono::milliseconds kShort{500};
constexpr std::chrono::milliseconds kLong{60000};

TEST_F(Streams, AreReadToTheirEnd) {
    const std::string stream = Stream();
    const Sender sender(Socket(), [&](int connection) { SendAll(connection, stream); });
    const auto reader = Open(kLong);
    EXPECT_GE(ReadAll(*reader), 2U * 48000);
    EXPECT_EQ(reader->EndedBecause(), std::nullopt);
    EXPECT_EQ(reader->Seconds(), std::nullopt);
}

TEST_F(Streams, ThatSendNothingEndWithAReason) {
    const Sender sender(Socket(), WaitForTheEnd);
    try {
        static_cast<void>(Open(kShort));
        FAIL();
    } catch (const lineup::Unreadable& unreadable) {
        EXPECT_STREQ(unreadable.what(), "nothing has arrived for 0.5 s");
    }
}

TEST_F(Streams, ThatStallAreReadUpToThere) {
    const std::string stream = Stream();
    const Sender sender(Socket(), [&](int connection) {
        SendAll(connection, stream.substr(0, stream.size() / 2));
        WaitForTheEnd(connection);
    });
    const auto reader = Open(kShort);
    const std::size_t samples = ReadAll(*reader);
    EXPECT_GT(samples, 24000U);
    EXPECT_LT(samples, 60000U);
    EXPECT_EQ(reader->EndedBecause().value_or("whole"), "nothing has arrived for 0.5 s");
}

TEST_F(Streams, ThatBreakOffAreReadUpToThere) {
    const std::string stream = Stream();
    const Sender sender(Socket(), [&](int connection) { SendAll(connection, stream.substr(0, stream.size() / 2)); });
    const auto reader = Open(kLong);
    EXPECT_GT(ReadAll(*reader), 24000U);
}

TEST_F(Streams, ThatStallCanBeCancelled) {
    const Sender sender(Socket(), WaitForTheEnd);
    std::atomic<int> asked = 0;
    EXPECT_THROW(static_cast<void>(Open(kLong, [&asked] { return ++asked < 2; })), lineup::Cancelled);
}

TEST_F(Streams, ThatNobodySendsSayWhy) {
    try {
        static_cast<void>(Open(kLong));
        FAIL();
    } catch (const lineup::Unreadable& unreadable) {
        EXPECT_THAT(unreadable.what(), HasSubstr("No such file or directory"));
    }
}

}  // namespace
