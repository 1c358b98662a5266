#pragma once

#include "Host/Interface/UI/ToolkitEntry.h"
#include "Host/Interface/UI/UI_Toolkit.h"

#include <QByteArray>
#include <QWidget>
#include <memory>

namespace zelui::qt {

/// The widget toolkit behind a plug-in's dialogs, on Qt. There must be a QApplication as long as it is in
/// use. UI thread.
class ZEL_API QtToolkit : public ui::UI_Toolkit {
public:
    /// `mainWindow`, when there is one, is what dialogs are shown over.
    explicit QtToolkit(QWidget* mainWindow = nullptr);
    ~QtToolkit() override;
    QtToolkit(const QtToolkit&) = delete;
    QtToolkit& operator=(const QtToolkit&) = delete;

    /// Null: widgets draw themselves.
    [[nodiscard]] const drawbot::SupplierInterface* DefaultDrawSupplier() override;

    [[nodiscard]] zelworkspace::workspace::TopLevelWindow* MainWindow() override;

    /// `script` is a form (see FormLoader). The dialog belongs to the window that `parent` is in, when it
    /// is one of this toolkit's nodes. Throws std::runtime_error for a form that cannot be used.
    [[nodiscard]] ui::NodeRef<ui::UI_DialogView> BuildDialog(const std::string& script, const Brio::String& layoutName,
                                                             const drawbot::SupplierInterface* drawSupplier,
                                                             ui::UI_Node* parent) override;

    /// How the last dialog was left.
    [[nodiscard]] ui::DialogOutcome LastOutcome() const noexcept { return *mLastOutcome; }

private:
    ui::NodeRef<zelworkspace::workspace::TopLevelWindow> mMainWindow;
    std::shared_ptr<ui::DialogOutcome> mLastOutcome;
};

}  // namespace zelui::qt
