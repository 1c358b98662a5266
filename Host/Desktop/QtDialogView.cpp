#include "Host/Desktop/QtDialogView.h"

namespace zelui::qt {

QtDialogView::QtDialogView(std::unique_ptr<FormDialog> dialog, std::shared_ptr<NodeTable> nodes,
                           std::shared_ptr<ui::DialogOutcome> outcome)
    : QtNode(*dialog.release(), nodes), mNodes(std::move(nodes)), mOutcome(std::move(outcome)) {}

// A window inside another one goes with it; then there is nothing left to delete.
QtDialogView::~QtDialogView() {
    delete Dialog();
}

void QtDialogView::RunModal() {
    if (FormDialog* const dialog = Dialog()) {
        *mOutcome = ui::DialogOutcome::Left;
        *mOutcome = dialog->Run() ? ui::DialogOutcome::Accepted : ui::DialogOutcome::Left;
    }
}

void QtDialogView::Close() {
    if (FormDialog* const dialog = Dialog()) {
        dialog->EndRun();
    }
}

}  // namespace zelui::qt
