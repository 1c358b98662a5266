#include "Host/Interface/UI/UI_Toolkit.h"

#include <atomic>

namespace zelui::ui {

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): there is one toolkit in a process
std::atomic<UI_Toolkit*> gToolkit{nullptr};

}  // namespace

UI_Toolkit* InstallToolkit(UI_Toolkit* toolkit) noexcept {
    return gToolkit.exchange(toolkit);
}

UI_Toolkit* CurrentToolkit() noexcept {
    return gToolkit.load();
}

}  // namespace zelui::ui
