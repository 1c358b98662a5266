// The layout scripts of dialogs: any bytes give a dialog that can be laid out, or a sentence. Windows go
// nowhere.
#include <lineup/services/LocalizerSetup.h>
#include "Host/Desktop/QtToolkit.h"
#include "Tests/Fuzz/Support/Require.h"

#include <QApplication>
#include <QPixmap>
#include <QWidget>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace {

// Lays the dialog out and draws it, unless it is larger than a screen.
void Draw() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        window->adjustSize();
        if (window->width() <= 1500 && window->height() <= 1500) {
            static_cast<void>(window->grab());
        }
    }
}

void IgnoreMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*message*/) {}

}  // namespace

// A form that gives a cell of a layout twice costs the form reader a few bytes, and fonts and message buses
// keep what they have until the end. That no widget of ours stays is checked below.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libQt6UiTools\nleak:libfontconfig\nleak:libdbus-1\n";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    qInstallMessageHandler(IgnoreMessage);
    static int count = *argc;
    new QApplication(count, *argv);  // until the process ends, as in any program
    zelcore::config::SetLanguage("C");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zelui::qt::QtToolkit toolkit;
    try {
        const std::string script(reinterpret_cast<const char*>(data), size);
        const auto view = toolkit.BuildDialog(script, u"Fuzzed", nullptr, nullptr);
        fuzz::Require(static_cast<bool>(view), "a form that is built has a view");
        auto* const button = view->GetUINodePtr("okButton", true);
        fuzz::Require(button == view->GetUINodePtr("okButton", true), "a control is the same one each time");
        Draw();
    } catch (const std::runtime_error& error) {
        fuzz::Require(std::string_view(error.what()).starts_with("cannot build the dialog Fuzzed: "),
                      "an error names the dialog");
    }
    fuzz::Require(QApplication::allWidgets().isEmpty(), "a dialog leaves no widget behind");
    return 0;
}
