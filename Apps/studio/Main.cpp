#include <lineup/BundleSearch.h>
#include "Apps/studio/CommandLine.h"
#include "Apps/studio/Text/CatalogueTranslator.h"
#include "Apps/studio/Window/StudioWindow.h"
#include "Apps/version/BuildVersion.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QTranslator>
#include <exception>
#include <memory>
#include <string_view>

namespace {

// Whether help or the version is all that is asked for, which takes no display.
bool AsksForText(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == "--") {
            break;  // names of files follow
        }
        if (word == "-h" || word == "--help" || word == "-v" || word == "--version") {
            return true;
        }
    }
    return false;
}

int Run(const std::string& file) {
    QApplication::setOrganizationName("BarsAndTone");
    QApplication::setApplicationName("lineup-studio");
    QApplication::setApplicationDisplayName("Lineup Studio");
    QApplication::setApplicationVersion(QString::fromStdString(apps::BuildVersion()));
    QApplication::setDesktopFileName("org.barsandtone.lineup_studio");
    QApplication::setWindowIcon(QIcon::fromTheme(QApplication::desktopFileName()));
    try {
        // The catalogues are the bundle's: loaded before anything is said. Qt's own texts come from Qt.
        const auto importer = std::make_shared<lineup::Importer>(lineup::FindBundle());
        QTranslator qtTexts;
        if (qtTexts.load(QLocale(), "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
            QCoreApplication::installTranslator(&qtTexts);
        }
        studio::CatalogueTranslator texts;
        QCoreApplication::installTranslator(&texts);
        studio::StudioWindow window(importer);
        window.show();
        if (!file.empty()) {
            window.Open(QString::fromLocal8Bit(file.c_str()));
        }
        return QApplication::exec();
    } catch (const std::exception& error) {
        QMessageBox::critical(nullptr, QApplication::applicationDisplayName(), QString::fromUtf8(error.what()));
        return 1;
    }
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kUsedWrongly = 2;
    studio::Arguments arguments;
    const auto commandLine = studio::MakeCommandLine(arguments);
    std::unique_ptr<QApplication> application;
    if (!AsksForText(argc, argv)) {
        application = std::make_unique<QApplication>(argc, argv);  // takes its own options out
    }
    try {
        commandLine->parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return commandLine->exit(error) == 0 ? 0 : kUsedWrongly;
    }
    return Run(arguments.file);
}
