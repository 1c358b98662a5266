// What becomes of a device that never answers.
#include "Apps/studio/Sound/DeviceOutput.h"
#include "Tests/Apps/studio/StudioHands.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <future>

namespace {

using namespace std::chrono_literals;
using studio::DeviceOutput;
using studio::SinkThread;

constexpr std::chrono::minutes kPatience(1);

// A device of which a call comes back when a test lets it, and which says when it has come to its end.
class Device {
public:
    void Wait() { mAnswer.get_future().wait(); }
    void Answer() { mAnswer.set_value(); }
    void End() { mEnd.set_value(); }
    [[nodiscard]] bool HasEnded() { return mEnd.get_future().wait_for(kPatience) == std::future_status::ready; }

    // A stream that has begun, and calls End at its end.
    [[nodiscard]] SinkThread::Sink Stream() {
        return {this, [](Device* device) { device->End(); }};
    }

private:
    std::promise<void> mAnswer;
    std::promise<void> mEnd;
};

TEST(DeviceOutput, EndsTheStreamInItsOwnThread) {
    Device device;
    std::thread::id made;
    std::thread::id ended;
    DeviceOutput output(
        [&](const DeviceOutput::TellFailure&) {
            made = std::this_thread::get_id();
            return SinkThread::Sink(&device, [&](Device*) { ended = std::this_thread::get_id(); });
        },
        kPatience);
    EXPECT_TRUE(output.End());
    EXPECT_NE(made, std::this_thread::get_id());
    EXPECT_EQ(made, ended);
}

TEST(DeviceOutput, SaysWhatTheStreamSaysAsLongAsItIsThere) {
    Device device;
    DeviceOutput output(
        [&](const DeviceOutput::TellFailure& tell) {
            device.Wait();
            tell("it has stopped");
            return device.Stream();
        },
        kPatience);
    QString heard;
    QObject::connect(
        &output, &DeviceOutput::Failed, &output, [&](const QString& problem) { heard = problem; },
        Qt::QueuedConnection);
    device.Answer();
    test::WaitFor([&] { return !heard.isEmpty(); }, "it is heard");
    EXPECT_EQ(heard, "it has stopped");
}

TEST(DeviceOutput, LeavesADeviceBehindThatDoesNotBegin) {
    Device device;
    {
        DeviceOutput output(
            [&](const DeviceOutput::TellFailure& tell) {
                device.Wait();
                tell("nobody is there to hear it");
                return device.Stream();
            },
            0ms);
        EXPECT_FALSE(output.End());
    }
    device.Answer();
    EXPECT_TRUE(device.HasEnded());  // that of a stream that is too late ends at once
}

TEST(DeviceOutput, LeavesADeviceBehindThatDoesNotEnd) {
    Device device;
    std::promise<void> begun;
    {
        DeviceOutput output(
            [&](const DeviceOutput::TellFailure&) {
                begun.set_value();
                return SinkThread::Sink(&device, [](Device* waiting) {
                    waiting->Wait();
                    waiting->End();
                });
            },
            0ms);
        begun.get_future().wait();
        EXPECT_FALSE(output.End());
    }
    device.Answer();
    EXPECT_TRUE(device.HasEnded());
}

// Of a sound library whose static objects wait for whoever is in it.
struct NeverDestroyed {
    ~NeverDestroyed() { std::abort(); }
};

TEST(DeviceOutputDeathTest, TheProgramEndsAllTheSame) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    constexpr int kStatus = 3;
    EXPECT_EXIT(
        {
            static const NeverDestroyed library;
            DeviceOutput output(
                [](const DeviceOutput::TellFailure&) -> SinkThread::Sink {
                    std::promise<void>().get_future().wait();
                    return nullptr;
                },
                0ms);
            output.End();
            std::exit(kStatus);
        },
        testing::ExitedWithCode(kStatus), "");
}

}  // namespace
