#pragma once

#include "Host/Interface/Brio/BrioUnknown.h"
#include "Src/BarsAndToneImporter/BarsAndToneInfo.h"

/// How settings go into and come out of the tone settings dialog. The order of the virtual operations is
/// part of the interface. The thread that runs the dialog.
class IToneSettingsDialogDataExchange : public Brio::BrioUnknown {
public:
    /// Takes over `info`, all of it, and forgets a cancel.
    virtual void SetPrefs(const BarsAndToneInfo& info) = 0;

    /// Copies the settings to `info`, cancelled or not.
    virtual void GetPrefs(BarsAndToneInfo& info) = 0;

    /// Marks that the person left the dialog with Cancel. The settings stay as they are.
    virtual void UserCancelled() = 0;
};

/// The interface's id, 9834A424-22D7-4E14-8F9A-6E0C194934D2. The argument only chooses the interface.
const CFUUIDBytes& GuidOf(const IToneSettingsDialogDataExchange* interface);
