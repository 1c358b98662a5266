#include "Apps/studio/Window/StudioWindow.h"
#include "Host/Lineup/BundleSearch.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <exception>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setOrganizationName("BarsAndTone");
    QApplication::setApplicationName("lineup-studio");
    QApplication::setApplicationDisplayName("Lineup Studio");
    QApplication::setApplicationVersion(LINEUP_VERSION);
    QCommandLineParser parser;
    parser.setApplicationDescription("Looks at line-up clips, plays, edits and exports them.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("FILE", "The document to open.", "[FILE]");
    parser.process(application);
    try {
        studio::StudioWindow window(std::make_shared<lineup::Importer>(lineup::FindBundle()));
        window.show();
        if (!parser.positionalArguments().isEmpty()) {
            window.Open(parser.positionalArguments().constFirst());
        }
        return QApplication::exec();
    } catch (const std::exception& error) {
        QMessageBox::critical(nullptr, QApplication::applicationDisplayName(), QString::fromUtf8(error.what()));
        return 1;
    }
}
