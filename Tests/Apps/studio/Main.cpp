#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QLocale>
#include <QSettings>
#include <QTemporaryDir>

namespace {

constexpr const char* kScreens = R"({"screens": [
    {"name": "one", "x": 0, "y": 0, "width": 1200, "height": 900, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
    {"name": "two", "x": 1200, "y": 0, "width": 1280, "height": 720, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}
]})";

}  // namespace

// Windows go nowhere unless QT_QPA_PLATFORM says where. What the program remembers goes to a folder of this
// run's own.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QLocale::setDefault(QLocale::c());
    const QTemporaryDir settings;
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen") {  // two screens
        QFile screens(settings.filePath("screens.json"));
        if (!screens.open(QIODevice::WriteOnly) || screens.write(kScreens) < 0) {
            return 1;
        }
        qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screens.fileName()).toUtf8());
    }
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    const QApplication application(argc, argv);
    QApplication::setOrganizationName("BarsAndToneTest");
    QApplication::setApplicationName("studio-test");
    return RUN_ALL_TESTS();
}
