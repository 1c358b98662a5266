#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>
#include <QSettings>
#include <QTemporaryDir>

// Windows go nowhere unless QT_QPA_PLATFORM says where. What the program remembers goes to a folder of this
// run's own.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QLocale::setDefault(QLocale::c());
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    const QApplication application(argc, argv);
    QApplication::setOrganizationName("BarsAndToneTest");
    QApplication::setApplicationName("studio-test");
    return RUN_ALL_TESTS();
}
