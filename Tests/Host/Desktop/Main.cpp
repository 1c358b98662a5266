#include <lineup/services/LocalizerSetup.h>
#include "Host/Desktop/QtToolkit.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

// The tests of the dialogs need an application round them. Windows go nowhere unless QT_QPA_PLATFORM says
// where; texts and numbers are the default ones until a test says otherwise.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QLocale::setDefault(QLocale::c());
    zelcore::config::SetLanguage("C");
    const QApplication application(argc, argv);
    zelui::qt::QtToolkit toolkit;
    zelui::ui::InstallToolkit(&toolkit);
    const int result = RUN_ALL_TESTS();
    zelui::ui::InstallToolkit(nullptr);
    return result;
}
