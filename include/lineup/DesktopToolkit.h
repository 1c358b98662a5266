#pragma once

#include <lineup/Api.h>
#include <lineup/interface/UI/ToolkitEntry.h>

#include <memory>

namespace lineup {

/// The widget toolkit, for the time in which a plug-in may show dialogs. It is loaded only when one of
/// these is made, so a program that shows no dialog runs without it. One at a time; UI thread.
class LINEUP_API DesktopToolkit {
public:
    /// Loads the toolkit and installs it for plug-ins. Throws Error when it is not installed on this
    /// machine, is not to be trusted or has no display.
    DesktopToolkit();
    ~DesktopToolkit();
    DesktopToolkit(const DesktopToolkit&) = delete;
    DesktopToolkit& operator=(const DesktopToolkit&) = delete;

    /// How the last dialog was left.
    [[nodiscard]] zelui::ui::DialogOutcome LastOutcome() const;

private:
    struct Toolkit;

    std::unique_ptr<Toolkit> mToolkit;
};

}  // namespace lineup
