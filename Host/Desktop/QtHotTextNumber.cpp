#include "Host/Desktop/QtHotTextNumber.h"

namespace zelui::qt {

QtHotTextNumber::QtHotTextNumber(HotTextNumber& number, std::weak_ptr<NodeTable> nodes)
    : QtControl(number, std::move(nodes)) {
    ReportOn(&HotTextNumber::Edited);
}

void QtHotTextNumber::SetValue(double value) {
    if (HotTextNumber* const number = Control()) {
        number->Show(value);
    }
}

double QtHotTextNumber::GetValue() const {
    return Control() == nullptr ? 0 : Control()->Number();
}

void QtHotTextNumber::SetMaxValue(double maximum) {
    if (HotTextNumber* const number = Control()) {
        number->SetHighest(maximum);
    }
}

}  // namespace zelui::qt
