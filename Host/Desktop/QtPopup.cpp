#include "Host/Desktop/QtPopup.h"

#include "Host/Desktop/Text.h"

namespace zelui::qt {

QtPopup::QtPopup(QComboBox& list, std::weak_ptr<NodeTable> nodes) : QtControl(list, std::move(nodes)) {
    ReportOn(&QComboBox::currentIndexChanged);
}

std::int64_t QtPopup::AddItem(const Brio::String& label) {
    QComboBox* const list = Control();
    if (list == nullptr) {
        return -1;
    }
    const FormDialog::CodeChange quiet(*list);
    const int chosen = list->currentIndex();
    list->addItem(ToQString(label));
    list->setCurrentIndex(chosen);
    return list->count() - 1;
}

void QtPopup::SetValue(std::int64_t index) {
    QComboBox* const list = Control();
    if (list == nullptr) {
        return;
    }
    const FormDialog::CodeChange quiet(*list);
    list->setCurrentIndex(index >= 0 && index < list->count() ? static_cast<int>(index) : -1);
}

std::int64_t QtPopup::GetValue() const {
    return Control() == nullptr ? -1 : Control()->currentIndex();
}

}  // namespace zelui::qt
