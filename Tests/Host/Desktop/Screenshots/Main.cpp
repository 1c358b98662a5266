// Makes pictures of the settings dialog: settings_dialog_screenshots FOLDER BUNDLE. Both layouts, every language, each
// state that looks different. QT_SCALE_FACTOR=2 makes them for a fine screen.
#include <lineup/Importer.h>
#include <lineup/services/LocalizerSetup.h>
#include "Host/Desktop/QtToolkit.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLocale>
#include <QPixmap>
#include <QTimer>
#include <array>
#include <cstdio>
#include <exception>
#include <string_view>

namespace {

struct Picture {
    const char* name;
    BarsAndToneInfo settings;
    const char* focus;            // the control that a person is at, or null for none
    const char* typed = nullptr;  // and what is typed into it
};

const std::array<Picture, 7> kPictures = {{
    {"mono", {.channelType = 1, .numChannels = 1}, nullptr},
    {"mono-typing", {.channelType = 1, .numChannels = 1}, "frequencyHotTextNumber"},
    {"stereo", {}, nullptr},
    {"stereo-wrong", {}, "amplitudeHotTextNumber", "18"},
    {"stereo-identify", {.identifyChannels = 1, .identifierFormat = EBUStereo400}, nullptr},
    {"5.1", {.channelType = 3, .numChannels = 6, .identifyChannels = 1, .identifierFormat = BLITS5_1}, nullptr},
    {"5.1-odd", {.channelType = 3, .numChannels = 6, .frequency = 1e6F, .amplitude = 0}, nullptr},
}};
const std::array<const char*, 5> kLanguages = {"C", "de", "es", "fr", "ja"};

void Take(const lineup::Importer& plugin, const Picture& picture, const QString& target) {
    QTimer::singleShot(0, qApp, [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        auto* const focus = picture.focus == nullptr ? dialog : dialog->findChild<QWidget*>(picture.focus);
        focus->setFocus(Qt::TabFocusReason);
        QApplication::processEvents();
        for (const char* letter = picture.typed; letter != nullptr && *letter != 0; ++letter) {
            QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(QLatin1Char(*letter)));
            QApplication::sendEvent(focus, &key);
        }
        QApplication::processEvents();
        if (!dialog->grab().save(target)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(target));
        }
        dialog->close();
    });
    BarsAndToneInfo settings = picture.settings;
    plugin.EditSettings(settings);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: settings_dialog_screenshots FOLDER BUNDLE\n", stderr);
        return 2;
    }
    try {
        zelui::qt::QtToolkit toolkit;
        zelui::ui::InstallToolkit(&toolkit);
        const lineup::Importer plugin(argv[2]);
        for (const char* const language : kLanguages) {
            zelcore::config::SetLanguage(language);
            QLocale::setDefault(QLocale(language));
            for (const Picture& picture : kPictures) {
                const QString ending = std::string_view(language) == "C" ? "" : QString("-") + language;
                Take(plugin, picture, QString("%1/settings-%2%3.png").arg(argv[1], picture.name, ending));
            }
        }
        zelui::ui::InstallToolkit(nullptr);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "settings_dialog_screenshots: %s\n", error.what());
        return 1;
    }
}
