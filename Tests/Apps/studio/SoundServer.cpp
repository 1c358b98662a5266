#include "Tests/Apps/studio/SoundServer.h"

#include <QTest>
#include <csignal>
#include <stdexcept>

namespace test {

namespace {

constexpr int kPatienceMs = 60000;

// A program that is looked for where the shell looks.
std::vector<std::string> Command(const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"/usr/bin/env", program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

}  // namespace

SoundServer::SoundServer() {
    const QByteArray folder(mFolder.Path().c_str());
    qputenv("XDG_RUNTIME_DIR", folder);
    qputenv("XDG_CONFIG_HOME", folder);
    qputenv("HOME", folder);
    qputenv("PULSE_SERVER", "unix:" + folder + "/native");
    std::filesystem::permissions(mFolder.Path(), std::filesystem::perms::owner_all);
    mServer.emplace(
        Command("pulseaudio",
                {"-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes", "--use-pid-file=no",
                 "--load=module-native-protocol-unix auth-anonymous=1 socket=" + (mFolder.Path() / "native").string()}),
        mFolder.Path());
    if (!QTest::qWaitFor([this] { return RunControl({"info"}).exitCode == 0; }, kPatienceMs)) {
        mServer->Send(SIGKILL);
        throw std::runtime_error("the sound server does not come up: " + mServer->Wait().err);
    }
}

SoundServer::~SoundServer() {
    mServer->Send(SIGTERM);
    // One that does not go by itself is killed.
    static_cast<void>(QTest::qWaitFor([this] { return !mServer->IsRunning(); }, kPatienceMs));
}

Ending SoundServer::RunControl(const std::vector<std::string>& arguments) const {
    return RunChild(Command("pactl", arguments), mFolder.Path());
}

// Throws std::runtime_error when the server's control program fails.
std::string SoundServer::Control(const std::vector<std::string>& arguments) const {
    const Ending ending = RunControl(arguments);
    if (ending.exitCode != 0) {
        throw std::runtime_error("pactl " + arguments.front() + ": " + ending.err);
    }
    return ending.out;
}

void SoundServer::UseNullSink(const std::string& name, int channels, const std::string& channelMap) const {
    if (!Control({"list", "short", "sinks"}).empty()) {
        RemoveSink();
    }
    Control({"load-module", "module-null-sink", "sink_name=" + name, "rate=48000", "format=float32le",
             "channels=" + std::to_string(channels), "channel_map=" + channelMap,
             "sink_properties=device.description=Speakers"});
}

void SoundServer::RemoveSink() const {
    Control({"unload-module", "module-null-sink"});
}

SinkRecorder::SinkRecorder(const QString& sink, int channels, const QString& channelMap) {
    mRecorder.start("parec",
                    {"--device=" + sink + ".monitor", "--raw", "--format=float32le", "--rate=48000",
                     QString("--channels=%1").arg(channels), "--channel-map=" + channelMap, "--latency-msec=50"});
    if (!mRecorder.waitForStarted(kPatienceMs) ||
        !QTest::qWaitFor([this] { return !Bytes().isEmpty(); }, kPatienceMs)) {
        throw std::runtime_error("the sink cannot be recorded: " + mRecorder.readAllStandardError().toStdString());
    }
}

SinkRecorder::~SinkRecorder() {
    mRecorder.terminate();
    if (!mRecorder.waitForFinished(kPatienceMs)) {
        mRecorder.kill();
        mRecorder.waitForFinished();
    }
}

const QByteArray& SinkRecorder::Bytes() {
    mBytes += mRecorder.readAllStandardOutput();
    return mBytes;
}

}  // namespace test
