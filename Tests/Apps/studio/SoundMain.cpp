// The main function of tests with sound: the server has to be there before Qt looks for one.
#include "Tests/Apps/studio/SoundServer.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>
#include <QSettings>
#include <QTemporaryDir>
#include <stdexcept>

namespace test {

namespace {

SoundServer* server = nullptr;

}  // namespace

SoundServer& TheSoundServer() {
    if (server == nullptr) {
        throw std::logic_error("there is no sound server");
    }
    return *server;
}

}  // namespace test

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (GTEST_FLAG_GET(list_tests)) {
        return RUN_ALL_TESTS();
    }
    QLocale::setDefault(QLocale::c());
    const QTemporaryDir settings;
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    QApplication application(argc, argv);
    test::SoundServer running;
    test::server = &running;
    const int result = RUN_ALL_TESTS();
    test::server = nullptr;
    return result;
}
