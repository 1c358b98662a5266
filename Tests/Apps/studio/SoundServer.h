#pragma once

#include "Tests/Support/ChildProgram.h"
#include "Tests/Support/TemporaryFolder.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// A sound server of a test's own: PulseAudio in a private folder, with no sink until one is asked for. While
/// it lives, the environment leads programs to it. Throws std::runtime_error when it does not come up.
class SoundServer {
public:
    SoundServer();
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// Makes a sink that plays into nothing, 32-bit float at 48 kHz, the only one there is. A person
    /// sees it as "Speakers". `channelMap` is as the server writes it: "front-left,front-right". Throws
    /// std::runtime_error when the server does not make it.
    void UseNullSink(const std::string& name, int channels, const std::string& channelMap) const;

    /// Takes the sink away, as if its device had been unplugged.
    void RemoveSink() const;

private:
    [[nodiscard]] Ending RunControl(const std::vector<std::string>& arguments) const;
    std::string Control(const std::vector<std::string>& arguments) const;

    TemporaryFolder mFolder;
    // Not a QProcess: that one borrows this program's memory until the other has started (vfork), and the thread
    // sanitizer then no longer watches the thread that did.
    std::optional<ChildProgram> mServer;
};

/// The speakers of a 5.1 device and of a stereo one, as the server writes them.
inline constexpr const char* kSurroundMap = "front-left,front-right,front-center,lfe,rear-left,rear-right";
inline constexpr const char* kStereoMap = "front-left,front-right";

/// The server of the whole run, in a program with SoundMain.cpp.
[[nodiscard]] SoundServer& TheSoundServer();

/// Everything that a sink plays, from its making on.
class SinkRecorder {
public:
    SinkRecorder(const QString& sink, int channels, const QString& channelMap);
    ~SinkRecorder();
    SinkRecorder(const SinkRecorder&) = delete;
    SinkRecorder& operator=(const SinkRecorder&) = delete;

    /// The bytes there are by now: interleaved floats. Comes back after some more have come, or a while.
    const QByteArray& Bytes();

private:
    QProcess mRecorder;
    QByteArray mBytes;
};

}  // namespace test
