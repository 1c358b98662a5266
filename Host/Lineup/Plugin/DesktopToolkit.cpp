#include <lineup/BundleSearch.h>
#include <lineup/DesktopToolkit.h>
#include <lineup/Error.h>
#include "Host/Lineup/Plugin/PlaceTrust.h"

#include <filesystem>

namespace fs = std::filesystem;
using zelui::ui::DialogOutcome;

namespace lineup {

namespace {

void RequireTrustedLibrary(const fs::path& library) {
    try {
        RequireTrusted(LibraryPrefix(), library);
    } catch (const Error& error) {
        throw Error(std::string("cannot show a dialog: ") + error.what());
    }
}

fs::path FindLibrary() {
    fs::path library = DynamicLibrary::Beside(zelui::ui::kToolkitLibraryName);
    std::error_code error;
    if (!fs::exists(library, error)) {
        throw Error("cannot show a dialog: " + library.string() + " is not installed");
    }
    RequireTrustedLibrary(library);
    return library;
}

}  // namespace

DesktopToolkit::DesktopToolkit() : mLibrary(FindLibrary()), mProgramName("lineup") {
    mArguments[0] = mProgramName.data();
    auto* const install = Find<zelui::ui::InstallToolkitFunction>(zelui::ui::kInstallToolkitName);
    if (const char* const problem = install(&mArgumentCount, mArguments)) {
        throw Error(std::string("cannot show a dialog: ") + problem);
    }
}

DesktopToolkit::~DesktopToolkit() {
    Find<zelui::ui::UninstallToolkitFunction>(zelui::ui::kUninstallToolkitName)();
}

DialogOutcome DesktopToolkit::LastOutcome() const {
    return Find<zelui::ui::LastDialogOutcomeFunction>(zelui::ui::kLastDialogOutcomeName)();
}

template <class Function>
Function* DesktopToolkit::Find(const char* name) const {
    void* const symbol = mLibrary.Find(name);
    if (symbol == nullptr) {
        throw Error(std::string("cannot show a dialog: ") + zelui::ui::kToolkitLibraryName + " has no " + name);
    }
    return reinterpret_cast<Function*>(symbol);
}

}  // namespace lineup
