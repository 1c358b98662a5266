#include <lineup/BundleSearch.h>
#include <lineup/DesktopToolkit.h>
#include <lineup/Error.h>
#include "Host/Lineup/Plugin/DynamicLibrary.h"
#include "Host/Lineup/Plugin/PlaceTrust.h"

#include <filesystem>
#include <string>

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

template <class Function>
Function* FindFunction(const DynamicLibrary& library, const char* name) {
    return &library.Function<Function>(name, "cannot show a dialog");
}

}  // namespace

struct DesktopToolkit::Toolkit {
    DynamicLibrary library{FindLibrary()};
    zelui::ui::InstallToolkitFunction* install =
        FindFunction<zelui::ui::InstallToolkitFunction>(library, zelui::ui::kInstallToolkitName);
    zelui::ui::UninstallToolkitFunction* uninstall =
        FindFunction<zelui::ui::UninstallToolkitFunction>(library, zelui::ui::kUninstallToolkitName);
    zelui::ui::LastDialogOutcomeFunction* lastOutcome =
        FindFunction<zelui::ui::LastDialogOutcomeFunction>(library, zelui::ui::kLastDialogOutcomeName);

    // The toolkit keeps pointing at these.
    std::string programName = "lineup";
    int argumentCount = 1;
    char* arguments[2] = {programName.data(), nullptr};
};

DesktopToolkit::DesktopToolkit() : mToolkit(std::make_unique<Toolkit>()) {
    if (const char* const problem = mToolkit->install(&mToolkit->argumentCount, mToolkit->arguments)) {
        throw Error(std::string("cannot show a dialog: ") + problem);
    }
}

DesktopToolkit::~DesktopToolkit() {
    mToolkit->uninstall();
}

DialogOutcome DesktopToolkit::LastOutcome() const {
    return mToolkit->lastOutcome();
}

}  // namespace lineup
