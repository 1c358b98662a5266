// playing_studio [FOLDER]: the studio's window, playing its clip round and round, as it does at first, on a sound
// device of its own until it is ended: what a watch of its memory and descriptors looks at. What it remembers goes into
// FOLDER.
#include <lineup/Importer.h>
#include "Apps/studio/Window/StudioWindow.h"
#include "Tests/Apps/studio/SoundServer.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>

namespace {

constexpr int kSoonMs = 60000;

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, argc > 1 ? QString(argv[1]) : settings.path());
    const QApplication application(argc, argv);
    try {
        const test::SoundServer server;
        server.UseNullSink("long_run", 2, test::kStereoMap);
        studio::StudioWindow window(std::make_shared<const lineup::Importer>(TEST_BUNDLE));
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window, kSoonMs)) {
            throw std::runtime_error("the window does not become the active one");
        }
        QTest::keyClick(&window, Qt::Key_Space);
        if (!QTest::qWaitFor([&window] { return window.Sound().Position() > 0; }, kSoonMs)) {
            throw std::runtime_error("the clip does not play");
        }
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
