#include "Tests/Apps/studio/SoundServer.h"

#include <QTest>
#include <stdexcept>

namespace test {

namespace {

constexpr int kPatienceMs = 60000;

void End(QProcess& process) {
    process.terminate();
    if (!process.waitForFinished(kPatienceMs)) {
        process.kill();
        process.waitForFinished();
    }
}

}  // namespace

SoundServer::SoundServer() {
    const QByteArray folder(mFolder.Path().c_str());
    qputenv("XDG_RUNTIME_DIR", folder);
    qputenv("XDG_CONFIG_HOME", folder);
    qputenv("HOME", folder);
    qputenv("PULSE_SERVER", "unix:" + folder + "/native");
    std::filesystem::permissions(mFolder.Path(), std::filesystem::perms::owner_all);
    mServer.setStandardErrorFile(QString::fromUtf8(folder) + "/server.log");
    mServer.start("pulseaudio",
                  {"-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes", "--use-pid-file=no",
                   QString("--load=module-native-protocol-unix auth-anonymous=1 socket=%1/native")
                       .arg(QString::fromUtf8(folder))});
    const bool isUp =
        mServer.waitForStarted(kPatienceMs) && QTest::qWaitFor(
                                                   [] {
                                                       QProcess info;
                                                       info.start("pactl", {"info"});
                                                       return info.waitForFinished(kPatienceMs) && info.exitCode() == 0;
                                                   },
                                                   kPatienceMs);
    if (!isUp) {
        throw std::runtime_error("the sound server does not come up: " + mServer.errorString().toStdString());
    }
}

SoundServer::~SoundServer() {
    End(mServer);
}

QByteArray SoundServer::Control(const QStringList& arguments) const {
    QProcess control;
    control.start("pactl", arguments);
    if (!control.waitForFinished(kPatienceMs) || control.exitCode() != 0) {
        throw std::runtime_error("pactl " + arguments.join(' ').toStdString() + ": " +
                                 control.readAllStandardError().toStdString());
    }
    return control.readAllStandardOutput();
}

void SoundServer::UseNullSink(const QString& name, int channels, const QString& channelMap) {
    if (!Control({"list", "short", "sinks"}).isEmpty()) {
        Control({"unload-module", "module-null-sink"});
    }
    Control({"load-module", "module-null-sink", "sink_name=" + name, "rate=48000", "format=float32le",
             QString("channels=%1").arg(channels), "channel_map=" + channelMap,
             "sink_properties=device.description=Speakers"});
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
    End(mRecorder);
}

const QByteArray& SinkRecorder::Bytes() {
    mBytes += mRecorder.readAllStandardOutput();
    return mBytes;
}

}  // namespace test
