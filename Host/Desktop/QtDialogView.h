#pragma once

#include "Host/Desktop/FormDialog.h"
#include "Host/Desktop/QtNode.h"
#include "Host/Interface/UI/ToolkitEntry.h"
#include "Host/Interface/UI/UI_DialogView.h"

#include <memory>

namespace zelui::qt {

/// The root view of a dialog made from a form; owns its window.
class QtDialogView : public QtNode<ui::UI_DialogView> {
public:
    /// `outcome` is told how each run ended.
    QtDialogView(std::unique_ptr<FormDialog> dialog, std::shared_ptr<NodeTable> nodes,
                 std::shared_ptr<ui::DialogOutcome> outcome);
    ~QtDialogView() override;
    QtDialogView(const QtDialogView&) = delete;
    QtDialogView& operator=(const QtDialogView&) = delete;

    /// Throws what a handler of one of the controls threw.
    void RunModal() override;
    void Close() override;
    [[nodiscard]] ui::Lookups LookedUp() const override { return mNodes->LookedUp(); }

private:
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-static-cast-downcast): the widget is the one it was made with
    [[nodiscard]] FormDialog* Dialog() const { return static_cast<FormDialog*>(Widget()); }

    std::shared_ptr<NodeTable> mNodes;
    std::shared_ptr<ui::DialogOutcome> mOutcome;
};

}  // namespace zelui::qt
