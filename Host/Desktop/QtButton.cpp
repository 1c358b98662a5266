#include "Host/Desktop/QtButton.h"

namespace zelui::qt {

QtButton::QtButton(QPushButton& button, std::weak_ptr<NodeTable> nodes) : QtControl(button, std::move(nodes)) {
    QObject::connect(&button, &QPushButton::clicked, &button, [&button] {
        if (FormDialog* const dialog = FormDialog::Of(&button)) {
            dialog->CommitTyping();
        }
    });
    ReportOn(&QPushButton::clicked);
}

}  // namespace zelui::qt
