#pragma once

#include "Host/Interface/Brio/InterfaceRef.h"
#include "Host/Interface/Brio/String.h"
#include "Host/Interface/UI/UI_Node.h"
#include "Host/Interface/UI/UI_NodeManager.h"

/// Runs the tone settings dialog with the layout `layoutName` and returns when it has been closed. The
/// settings come from `dataExchange`, which must answer as IToneSettingsDialogDataExchange; OK sets them
/// there, Cancel marks it cancelled, and closing the dialog another way does neither, as does a layout
/// that the plug-in's bundle lacks: then nothing is shown. `drawSupplier` and `parent` may be null; they
/// are passed on to the host. Throws the host's error for a violated contract without a data exchange,
/// and whatever the host throws. UI thread.
void HandleToneSettingsDialog(const Brio::String& layoutName, Brio::BrioUnknownRef dataExchange,
                              const zelui::drawbot::SupplierInterface* drawSupplier, zelui::ui::UI_Node* parent);
