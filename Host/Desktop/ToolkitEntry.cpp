#include "Host/Interface/UI/ToolkitEntry.h"

#include "Host/Desktop/Display.h"
#include "Host/Desktop/QtToolkit.h"

#include <QApplication>
#include <memory>
#include <string>

using zelui::ui::DialogOutcome;

// The three functions by which a program without Qt takes up the toolkit.
extern "C" {
ZEL_API zelui::ui::InstallToolkitFunction zeluiInstallQtToolkit;
ZEL_API zelui::ui::UninstallToolkitFunction zeluiUninstallQtToolkit;
ZEL_API zelui::ui::LastDialogOutcomeFunction zeluiLastDialogOutcome;
}

namespace {

// What Install brings up. A program that has a QApplication of its own keeps it.
struct Installed {
    std::unique_ptr<QApplication> application;
    zelui::qt::QtToolkit toolkit;
    zelui::ui::UI_Toolkit* before = nullptr;
};

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): there is one toolkit in a process
std::unique_ptr<Installed> installed;
std::string problem;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

void BringUp(int* argc, char** argv) {
    auto fresh = std::make_unique<Installed>();
    if (QCoreApplication::instance() == nullptr) {
        fresh->application = std::make_unique<QApplication>(*argc, argv);
    }
    fresh->before = zelui::ui::InstallToolkit(&fresh->toolkit);
    installed = std::move(fresh);
}

}  // namespace

const char* zeluiInstallQtToolkit(int* argc, char** argv) {
    if (installed != nullptr) {
        return nullptr;
    }
    problem = QCoreApplication::instance() == nullptr ? zelui::qt::DisplayProblem(*argc, argv) : "";
    if (!problem.empty()) {
        return problem.c_str();
    }
    BringUp(argc, argv);
    return nullptr;
}

void zeluiUninstallQtToolkit() {
    if (installed != nullptr) {
        zelui::ui::InstallToolkit(installed->before);
        installed.reset();
    }
}

DialogOutcome zeluiLastDialogOutcome() {
    return installed == nullptr ? DialogOutcome::NoDialog : installed->toolkit.LastOutcome();
}
