#pragma once

#include "../Core/Export.h"

namespace zelui::drawbot {

/// What draws for a user interface; opaque to plug-ins, which only pass it on.
class SupplierInterface {
public:
    virtual ~SupplierInterface() = default;
};

}  // namespace zelui::drawbot

namespace zelui::ui {

/// Keeps what all nodes of the process share. UI thread.
class ZEL_API UI_NodeManager {
public:
    /// The manager of the process; never null. `create` says whether the user interface should be
    /// brought up if it is not there yet.
    static UI_NodeManager* Get(bool create);

    /// What dialogs are drawn with; null without a user interface.
    [[nodiscard]] const drawbot::SupplierInterface* GetDefaultDrawSupplier() const;
};

}  // namespace zelui::ui
