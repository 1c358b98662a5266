#include "Tests/Apps/studio/Check/Recordings.h"

#include <lineup/Clip.h>
#include <lineup/Exporter.h>
#include <lineup/ToneChoice.h>

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <cstdint>
#include <stdexcept>

namespace test {

namespace {

constexpr int kFramesASecond = 5;
constexpr std::int64_t kSeconds = 14;  // a cycle is a little shorter
constexpr int kFewestHdLines = 720;

void RunFfmpeg(const QStringList& arguments) {
    QProcess ffmpeg;
    ffmpeg.start("ffmpeg", QStringList{"-v", "error", "-y", "-nostdin"} + arguments);
    if (!ffmpeg.waitForFinished(-1) || ffmpeg.exitCode() != 0) {
        throw std::runtime_error("ffmpeg: " + ffmpeg.readAllStandardError().toStdString());
    }
}

}  // namespace

void RecordLineup(const std::shared_ptr<const lineup::Importer>& plugin, const QString& file, QSize size) {
    lineup::ExportSettings settings;
    settings.target = QFile::encodeName(file).toStdString();
    settings.width = size.width();
    settings.height = size.height();
    settings.card = lineup::Card::HD;
    settings.frameRate = {kFramesASecond, 1};
    settings.frames = kFramesASecond * kSeconds;
    settings.videoCodec = "prores-hq";
    settings.audioCodec = "pcm-s24";
    settings.disk = lineup::Disk::DoNotWait;
    lineup::Export(lineup::Clip(plugin, lineup::MakeSettings(*plugin, {.ident = "blits"})), settings);
}

void DamageRecording(const QString& from, const QString& to, QSize size) {
    const bool isHd = size.height() >= kFewestHdLines;
    const QString matrices =
        isHd ? "in_color_matrix=bt709:out_color_matrix=bt601" : "in_color_matrix=bt601:out_color_matrix=bt709";
    const QString picture = "[0:v]scale=" + matrices +
                            ":flags=accurate_rnd+bitexact,drawbox=enable='eq(n,40)':color=black:t=fill,"
                            "setparams=colorspace=" +
                            (isHd ? "bt709" : "smpte170m") + "[v]";
    const QString sound =
        "[0:a]pan=5.1(side)|c0=c1|c1=c0|c2=c2|c3=c3|c4=-1*c4|c5=c5,volume=enable='between(t,5,5.29999)':volume=0[a]";
    RunFfmpeg({"-i", from, "-filter_complex", picture + ";" + sound, "-map", "[v]", "-map", "[a]", "-c:v", "ffv1",
               "-c:a", "pcm_s24le", to});
}

}  // namespace test
