// Makes pictures of Lineup Studio: studio_screenshots FOLDER BUNDLE. QT_SCALE_FACTOR=2 makes them for a fine
// screen. A sound server of its own stands in for loudspeakers.
#include <lineup/ToneChoice.h>
#include "Apps/studio/Window/StudioWindow.h"
#include "Tests/Apps/studio/SoundServer.h"

#include <QApplication>
#include <QLabel>
#include <QPixmap>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <array>
#include <cstdio>
#include <exception>
#include <optional>

namespace {

using studio::Act;

struct Scene {
    const char* name;
    const char* ident;  // null: a steady tone
    Act theme;
    bool scope;
    double playTo;  // seconds into the clip; 0: not playing
    std::int64_t lengthFrames;
    std::optional<QPoint> pointAt;  // in shares of a thousand of the picture
};

const std::array<Scene, 4> kScenes = {{
    {"stereo", nullptr, Act::ThemeLight, false, 0, 125, QPoint(180, 300)},
    {"blits", "blits", Act::ThemeLight, false, 2.4, 335, std::nullopt},
    {"scope", "ebu-stereo-1000", Act::ThemeLight, true, 1.3, 150, QPoint(300, 400)},
    {"dark", "ebu-5.1", Act::ThemeDark, true, 1.7, 300, QPoint(440, 300)},
}};

// Throws when `what` does not come to hold.
template <class Condition>
void Wait(Condition condition, const char* what) {
    if (!QTest::qWaitFor(condition, 30000)) {
        throw std::runtime_error(std::string("this never happened: ") + what);
    }
}

void Take(const std::shared_ptr<const lineup::Importer>& importer, const Scene& scene, const QString& target) {
    studio::StudioWindow window(importer);
    lineup::ToneChoice tone;
    if (scene.ident != nullptr) {
        tone.ident = scene.ident;
    } else {
        tone.levelDb = -18;
    }
    lineup::ClipDocument values;
    values.settings = lineup::MakeSettings(*importer, tone);
    values.lengthFrames = scene.lengthFrames;
    window.Document().New(values);
    window.Commands()[scene.theme].trigger();
    window.Commands()[Act::Scope].setChecked(scene.scope);
    window.resize(1180, 740);
    window.show();
    auto* const picture = window.findChild<studio::PictureView*>();
    Wait([&] { return picture->Frame().width() > 0; }, "the picture comes");
    auto* const sound = window.findChild<QLabel*>("sound");
    Wait([&] { return sound->text() == "Speakers"; }, "the loudspeakers are found");
    if (scene.playTo > 0) {
        window.Sound().Seek(0);
        window.Sound().Play();
        const double rateHz = static_cast<double>(window.Document().Clip()->SampleRate());
        Wait([&] { return static_cast<double>(window.Sound().Position()) > scene.playTo * rateHz; }, "it plays");
    }
    if (scene.pointAt) {
        const QRectF frame = picture->Frame();
        const QPointF share(scene.pointAt->x() / 1000.0, scene.pointAt->y() / 1000.0);
        QTest::mouseMove(
            picture, QPointF(frame.x() + share.x() * frame.width(), frame.y() + share.y() * frame.height()).toPoint());
        QApplication::processEvents();
    }
    if (!window.grab().save(target)) {
        throw std::runtime_error("cannot write " + target.toStdString());
    }
}

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    if (argc != 3) {
        std::fputs("usage: studio_screenshots FOLDER BUNDLE\n", stderr);
        return 2;
    }
    try {
        test::SoundServer server;
        server.UseNullSink("speakers", 6, "front-left,front-right,front-center,lfe,rear-left,rear-right");
        const auto importer = std::make_shared<const lineup::Importer>(argv[2]);
        const QString scale = qFuzzyCompare(application.devicePixelRatio(), 1) ? "" : "@2x";
        for (const Scene& scene : kScenes) {
            Take(importer, scene, QString("%1/studio-%2%3.png").arg(argv[1], scene.name, scale));
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "studio_screenshots: %s\n", error.what());
        return 1;
    }
}
